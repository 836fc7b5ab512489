#include <settings.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class tst_Settings : public QObject
{
    Q_OBJECT

private:
    static void writeFile(const QString &path, const QByteArray &text)
    {
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(text);
    }

private slots:
    void userFileComesBeforeSystemFile()
    {
        QTemporaryDir home, system;
        writeFile(home.filePath(QStringLiteral("tremidia/tremidia.conf")),
                  "[Επιλεγμένη Βάση]\nΣχολική βάση=/data/school.sqlite\n");
        writeFile(system.filePath(QStringLiteral("tremidia/tremidia.conf")),
                  "[Επιλεγμένη Βάση]\nΆλλη=/srv/other.mdb\n");
        qputenv("XDG_CONFIG_HOME", home.path().toUtf8());
        qputenv("XDG_CONFIG_DIRS", system.path().toUtf8());
        const auto selected = platform::readSelectedDatabase();
        QCOMPARE(selected.title, QStringLiteral("Σχολική βάση"));
        QCOMPARE(selected.path, QStringLiteral("/data/school.sqlite"));
    }

    void systemFileIsUsedWhenUserHasNone()
    {
        QTemporaryDir home, system;
        writeFile(system.filePath(QStringLiteral("tremidia/tremidia.conf")),
                  "; machine-wide choice\n[Επιλεγμένη Βάση]\nΆλλη = /srv/other.mdb\n");
        qputenv("XDG_CONFIG_HOME", home.path().toUtf8());
        qputenv("XDG_CONFIG_DIRS", (QStringLiteral("/nonexistent:") + system.path()).toUtf8());
        const auto selected = platform::readSelectedDatabase();
        QCOMPARE(selected.title, QStringLiteral("Άλλη"));
        QCOMPARE(selected.path, QStringLiteral("/srv/other.mdb"));
    }

    void groupWithoutEntryGivesEmptyPath()
    {
        QTemporaryDir home;
        writeFile(home.filePath(QStringLiteral("tremidia/tremidia.conf")), "[Επιλεγμένη Βάση]\n[Άλλο]\nx=y\n");
        qputenv("XDG_CONFIG_HOME", home.path().toUtf8());
        qputenv("XDG_CONFIG_DIRS", "/nonexistent");
        const auto selected = platform::readSelectedDatabase();
        QVERIFY(selected.title.isEmpty());
        QVERIFY(selected.path.isEmpty());
    }

    void otherGroupsAreReadWithEveryKeyInOrder()
    {
        QTemporaryDir home, system;
        writeFile(home.filePath(QStringLiteral("tremidia/tremidia.conf")),
                  "[Επιλεγμένη Βάση]\nΣχολική=/data/school.sqlite\n");
        writeFile(system.filePath(QStringLiteral("tremidia/tremidia.conf")),
                  "[Επιλεγμένη Βάση]\nΆλλη=/srv/other.mdb\n"
                  "[Παράδοση]\nFolder = /srv/handins\n# the drop link\nWebDAV=\"https://cloud.example/dav/\"\n");
        qputenv("XDG_CONFIG_HOME", home.path().toUtf8());
        qputenv("XDG_CONFIG_DIRS", system.path().toUtf8());
        const auto group = platform::readSettingsGroup(QStringLiteral("Παράδοση"));
        QCOMPARE(group.entries.size(), 2);
        QCOMPARE(group.entries.at(0).first, QStringLiteral("Folder"));
        QCOMPARE(group.value(QStringLiteral("Folder")), QStringLiteral("/srv/handins"));
        QCOMPARE(group.value(QStringLiteral("WebDAV")), QStringLiteral("https://cloud.example/dav/"));
        QVERIFY(group.value(QStringLiteral("User")).isEmpty());
        QVERIFY(group.settingsFile.startsWith(QDir(system.path()).absolutePath()));
        QVERIFY(platform::readSettingsGroup(QStringLiteral("Κανένα")).settingsFile.isEmpty());
    }

    void userChoicesLiveInAFileOfTheirOwn()
    {
        QTemporaryDir home;
        qputenv("XDG_CONFIG_HOME", home.path().toUtf8());
        QCOMPARE(platform::userSettingsPath(), QDir(home.path()).filePath(QStringLiteral("tremidia/user.conf")));
        QVERIFY(!platform::settingsSearchPath().contains(platform::userSettingsPath()));
    }

    void searchPathFollowsXdgDefaults()
    {
        qunsetenv("XDG_CONFIG_HOME");
        qunsetenv("XDG_CONFIG_DIRS");
        const QStringList path = platform::settingsSearchPath();
        QCOMPARE(path.size(), 2);
        QCOMPARE(path.at(0), QDir::homePath() + QStringLiteral("/.config/tremidia/tremidia.conf"));
        QCOMPARE(path.at(1), QStringLiteral("/etc/xdg/tremidia/tremidia.conf"));
    }
};

QTEST_GUILESS_MAIN(tst_Settings)
#include "tst_settings.moc"
