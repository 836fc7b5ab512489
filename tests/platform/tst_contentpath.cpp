#include <contentpath.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class tst_ContentPath : public QObject
{
    Q_OBJECT

private slots:
    void folderLiteralsResolveRegardlessOfCase()
    {
        QTemporaryDir data;
        QDir(data.path()).mkpath(QStringLiteral("Piges"));
        QDir(data.path()).mkpath(QStringLiteral("photos"));
        QFile f(data.filePath(QStringLiteral("Piges/Keimeno1.rtf")));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.close();

        const QString viaLower = platform::contentPath(data.path(), QStringLiteral("\\piges\\"), QStringLiteral("keimeno1.RTF"));
        QCOMPARE(viaLower, data.filePath(QStringLiteral("Piges/Keimeno1.rtf")));
        QVERIFY(platform::fileExists(viaLower));
        QVERIFY(platform::fileExists(data.path() + QStringLiteral("\\Piges\\Keimeno1.rtf")));
        QVERIFY(!platform::fileExists(platform::contentPath(data.path(), QStringLiteral("\\Photos\\"), QStringLiteral("none.jpg"))));
    }

    void missingComponentsAreKeptAsWritten()
    {
        QTemporaryDir data;
        const QString p = platform::contentPath(data.path(), QStringLiteral("\\Sounds\\"), QStringLiteral("a.wav"));
        QCOMPARE(p, data.path() + QStringLiteral("/Sounds/a.wav"));
    }

    void emptyNameIsNoFile()
    {
        QTemporaryDir data;
        QDir(data.path()).mkpath(QStringLiteral("piges"));
        QVERIFY(!platform::fileExists(platform::buildPath(platform::buildPath(data.path(), QStringLiteral("piges")), QString())));
        QVERIFY(!platform::fileExists(QString()));
    }

    void parentOfFileInRootIsRoot()
    {
        QCOMPARE(platform::parentFolderName(QStringLiteral("/content.sqlite")), QStringLiteral("/"));
        QCOMPARE(platform::parentFolderName(QStringLiteral("/srv/tremidia/content.sqlite")), QStringLiteral("/srv/tremidia"));
        QCOMPARE(platform::parentFolderName(QStringLiteral("content.sqlite")), QString());
        // Joined with a folder literal, a root data folder still gives a usable path.
        QCOMPARE(platform::resolvePath(QStringLiteral("/") + QStringLiteral("\\piges\\") + QStringLiteral("a.rtf")),
                 QStringLiteral("/piges/a.rtf"));
    }
};

QTEST_GUILESS_MAIN(tst_ContentPath)
#include "tst_contentpath.moc"
