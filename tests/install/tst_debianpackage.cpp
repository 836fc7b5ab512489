// The Debian package as cpack makes it from the build folder: its name, what it holds,
// what it depends on and the technician's settings file kept as a conffile.

#include "../support/processrun.h"
#include "installedfiles.h"

#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

class tst_DebianPackage : public QObject
{
    Q_OBJECT

    QTemporaryDir m_out;
    QString m_deb;
    QString m_info; // dpkg-deb -I
    QStringList m_contents; // dpkg-deb -c, one path a line

    // The value of a field of the control file, continuation lines joined.
    QString field(const QString &name) const
    {
        const QStringList lines = m_info.split(u'\n');
        for (qsizetype i = 0; i < lines.size(); ++i) {
            const QString line = lines.at(i).trimmed();
            if (!line.startsWith(name + u':'))
                continue;
            return line.mid(name.size() + 1).trimmed();
        }
        return {};
    }

    static QStringList packageNames(const QString &list)
    {
        QStringList names;
        for (const QString &item : list.split(u',', Qt::SkipEmptyParts))
            names << item.trimmed().section(u' ', 0, 0);
        return names;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_out.isValid());
        QVERIFY2(!QStandardPaths::findExecutable(QStringLiteral("dpkg-shlibdeps")).isEmpty(),
            "dpkg-shlibdeps (dpkg-dev)");
        const ProcessRun made = runProcess(QStringLiteral(TREMIDIA_CPACK_COMMAND),
            {QStringLiteral("-G"), QStringLiteral("DEB"), QStringLiteral("--config"),
                QStringLiteral(TREMIDIA_BINARY_DIR "/CPackConfig.cmake"), QStringLiteral("-B"), m_out.path()},
            QProcessEnvironment::systemEnvironment(), 600000, QStringLiteral(TREMIDIA_BINARY_DIR));
        QVERIFY2(made.ok(), made.all().constData());
        m_deb = m_out.filePath(QStringLiteral("tremidia_" TREMIDIA_PROJECT_VERSION "_amd64.deb"));
        QVERIFY2(QFileInfo::exists(m_deb), qPrintable(QDir(m_out.path()).entryList().join(u' ')));

        const ProcessRun info = runProcess(QStringLiteral("dpkg-deb"), {QStringLiteral("-I"), m_deb});
        QVERIFY2(info.ok(), info.all().constData());
        m_info = QString::fromUtf8(info.out);
        const ProcessRun contents = runProcess(QStringLiteral("dpkg-deb"), {QStringLiteral("-c"), m_deb});
        QVERIFY2(contents.ok(), contents.all().constData());
        for (const QString &line : QString::fromUtf8(contents.out).split(u'\n', Qt::SkipEmptyParts)) {
            // "-rw-r--r-- root/root 1234 2026-01-01 00:00 ./usr/bin/tremidia"
            const qsizetype at = line.indexOf(QStringLiteral(" ./"));
            if (at >= 0)
                m_contents << line.mid(at + 2);
        }
    }

    void packageHoldsEveryInstalledFile()
    {
        for (const QString &file : installed::files())
            QVERIFY2(m_contents.contains(file), qPrintable(file));
        QVERIFY(m_contents.contains(installed::Data + QStringLiteral("/tremidia/sample/piges/")));
    }

    void packageIsNamedForDebian()
    {
        QCOMPARE(field(QStringLiteral("Package")), QStringLiteral("tremidia"));
        QCOMPARE(field(QStringLiteral("Version")), QStringLiteral(TREMIDIA_PROJECT_VERSION));
        QCOMPARE(field(QStringLiteral("Architecture")), QStringLiteral("amd64"));
        QCOMPARE(field(QStringLiteral("Section")), QStringLiteral("education"));
    }

    void dependsOnSharedLibrariesAndRunTimePackages()
    {
        const QStringList depends = packageNames(field(QStringLiteral("Depends")));
        // From the shared libraries the programs link.
        for (const char *library : {"libqt6widgets6", "libqt6gui6", "libsqlite3-0", "libmdb3", "libc6"})
            QVERIFY2(depends.contains(QString::fromLatin1(library)), library);
        // What Qt and the media player load at run time.
        for (const char *plugin : {"qt6-qpa-plugins", "qt6-image-formats-plugins", "libqt6svg6",
                 "gstreamer1.0-plugins-base", "gstreamer1.0-plugins-good", "fonts-dejavu-core", "xdg-utils"})
            QVERIFY2(depends.contains(QString::fromLatin1(plugin)), plugin);
        // The media and pictures of the era: MPEG-1, WMV/ASF, MIDI and its sound font, EMF.
        for (const char *media :
            {"gstreamer1.0-plugins-ugly", "gstreamer1.0-plugins-bad", "gstreamer1.0-libav",
                "timgm6mb-soundfont", "libemf2svg1", "libgstreamer1.0-0", "libgstreamer-plugins-base1.0-0"})
            QVERIFY2(depends.contains(QString::fromLatin1(media)), media);
        QVERIFY(
            packageNames(field(QStringLiteral("Recommends"))).contains(QStringLiteral("libreoffice-writer")));
        QVERIFY(!depends.contains(QStringLiteral("libreoffice-writer")));
        // Reading aloud: the speech service and its Greek voice are recommended, the
        // program runs without them.
        const QStringList recommends = packageNames(field(QStringLiteral("Recommends")));
        for (const char *speech :
            {"speech-dispatcher", "speech-dispatcher-espeak-ng", "espeak-ng"}) {
            QVERIFY2(recommends.contains(QString::fromLatin1(speech)), speech);
            QVERIFY2(!depends.contains(QString::fromLatin1(speech)), speech);
        }
    }

    void everyRunTimePackageIsAskedFor()
    {
        // Technicians install with --no-install-recommends: what the program needs at run
        // time is a dependency, not a recommendation. LibreOffice Writer and the speech
        // service are recommended: without them the program only tells that they are missing.
        const QStringList depends = packageNames(field(QStringLiteral("Depends")));
        const QStringList recommends = packageNames(field(QStringLiteral("Recommends")));
        QFile list(QStringLiteral(TREMIDIA_SOURCE_DIR "/tools/packages/run.txt"));
        QVERIFY(list.open(QIODevice::ReadOnly | QIODevice::Text));
        for (const QString &line : QString::fromUtf8(list.readAll()).split(u'\n')) {
            const QString name = line.section(u'#', 0, 0).trimmed();
            if (name.isEmpty())
                continue;
            const bool doneWithout = name.startsWith(QStringLiteral("libreoffice-"))
                || name.startsWith(QStringLiteral("speech-dispatcher")) || name == u"espeak-ng";
            if (doneWithout)
                QVERIFY2(recommends.contains(name), qPrintable(name));
            else
                QVERIFY2(depends.contains(name), qPrintable(name));
        }
        for (const char *needed : {"fonts-urw-base35", "qt6-translations-l10n"})
            QVERIFY2(depends.contains(QString::fromLatin1(needed)), needed);
    }

    void systemSettingsAreTheTechniciansConffile()
    {
        QTemporaryDir control;
        const ProcessRun r
            = runProcess(QStringLiteral("dpkg-deb"), {QStringLiteral("-e"), m_deb, control.path()});
        QVERIFY2(r.ok(), r.all().constData());
        QFile conffiles(control.filePath(QStringLiteral("conffiles")));
        QVERIFY(conffiles.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(conffiles.readAll()).trimmed(), installed::SystemSettings);
    }
};

QTEST_GUILESS_MAIN(tst_DebianPackage)
#include "tst_debianpackage.moc"
