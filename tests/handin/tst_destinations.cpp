#include "destinations.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

// Where bundles go, as the technician writes it in the settings file's group «Παράδοση».
class tst_Destinations final : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;

    void writeSettings(const QByteArray &text)
    {
        QVERIFY(QDir(m_dir->path()).mkpath(QStringLiteral("config/tremidia")));
        QFile file(m_dir->filePath(QStringLiteral("config/tremidia/tremidia.conf")));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(text);
    }

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_dir->filePath(QStringLiteral("config"))));
        qputenv("XDG_CONFIG_DIRS", QFile::encodeName(m_dir->filePath(QStringLiteral("none"))));
    }

    void cleanup()
    {
        qunsetenv("XDG_CONFIG_HOME");
        qunsetenv("XDG_CONFIG_DIRS");
        m_dir.reset();
    }

    void nothingSet()
    {
        writeSettings("[Επιλεγμένη Βάση]\nΙστορία=/srv/istoria.db\n");
        const handin::Destinations destinations = handin::Destinations::fromSettings();
        QVERIFY(!destinations.any());
        QVERIFY(destinations.folder.isEmpty());
        QVERIFY(!destinations.webdav.isValid());
    }

    void bothAreUsed()
    {
        writeSettings("[Επιλεγμένη Βάση]\nΙστορία=/srv/istoria.db\n\n"
                      "[Παράδοση]\n"
                      "; the teacher's share, and the school's cloud as well\n"
                      "Folder = /mnt/καθηγητής/παραδόσεις\n"
                      "WebDAV=https://cloud.example.gr/public.php/webdav/\n"
                      "User=kT8sQ2fileDrop\n"
                      "Password=p;a=ss\n");
        const handin::Destinations destinations = handin::Destinations::fromSettings();
        QVERIFY(destinations.any());
        QCOMPARE(destinations.folder, QStringLiteral("/mnt/καθηγητής/παραδόσεις"));
        QCOMPARE(destinations.webdav, QUrl(QStringLiteral("https://cloud.example.gr/public.php/webdav")));
        QCOMPARE(destinations.user, QStringLiteral("kT8sQ2fileDrop"));
        QCOMPARE(destinations.password, QStringLiteral("p;a=ss"));
    }

    void folderAlone()
    {
        writeSettings("[Παράδοση]\nFolder=/srv/drop\n");
        const handin::Destinations destinations = handin::Destinations::fromSettings();
        QVERIFY(destinations.any());
        QCOMPARE(destinations.folder, QStringLiteral("/srv/drop"));
        QVERIFY(!destinations.webdav.isValid());
    }

    void aURLThatIsNotWebIsNotUsed_data()
    {
        QTest::addColumn<QByteArray>("url");
        QTest::newRow("ftp") << QByteArray("ftp://server/drop");
        QTest::newRow("file") << QByteArray("file:///srv/drop");
        QTest::newRow("no host") << QByteArray("https:///drop");
        QTest::newRow("words") << QByteArray("ο διακομιστής");
    }

    void aURLThatIsNotWebIsNotUsed()
    {
        QFETCH(QByteArray, url);
        writeSettings("[Παράδοση]\nWebDAV=" + url + "\n");
        const handin::Destinations destinations = handin::Destinations::fromSettings();
        QVERIFY(!destinations.webdav.isValid());
        QVERIFY(!destinations.any());
    }
};

QTEST_GUILESS_MAIN(tst_Destinations)
#include "tst_destinations.moc"
