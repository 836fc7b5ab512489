// The content tool's picture and media commands, on the small files of each format the
// content of the era holds and on broken ones: what the viewers show and the player
// plays, the tool draws and plays; what they refuse, it refuses, naming the file.

#include "../support/contenttool.h"

#include <QElapsedTimer>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

QString eraFile(const QString &name)
{
    return QStringLiteral(TREMIDIA_SOURCE_DIR "/tests/data/media/") + name;
}

// The media player's limit for a file to open (media::Player::LoadLimitMs).
constexpr int LoadLimitMs = 5000;

testing::ToolRun tool(const QStringList &args)
{
    return testing::contentTool(args, 60000);
}

} // namespace

class tst_MediaTool : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

private slots:
    void pictureDrawsEachFormatIntoAPng_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QSize>("size");
        QTest::newRow("BMP") << u"picture.bmp"_s << QSize(48, 32);
        QTest::newRow("GIF") << u"picture.gif"_s << QSize(48, 32);
        QTest::newRow("JPEG") << u"picture.jpg"_s << QSize(48, 32);
        QTest::newRow("WMF") << u"picture.wmf"_s << QSize(100, 50);
        QTest::newRow("EMF") << u"picture.emf"_s << QSize(100, 50);
    }

    void pictureDrawsEachFormatIntoAPng()
    {
        QFETCH(QString, file);
        QFETCH(QSize, size);
        const QString out = m_dir.filePath(file + u".png"_s);
        const testing::ToolRun run = tool({u"picture"_s, eraFile(file), out});
        QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
        const QImage drawn(out);
        QCOMPARE(drawn.size(), size);
        if (file.endsWith(u"mf"_s))
            QCOMPARE(drawn.pixelColor(35, 25), QColor(255, 0, 0));
    }

    void pictureRefusesWhatTheViewersRefuse_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("an enhanced metafile cut short") << u"broken.emf"_s;
        QTest::newRow("a sound") << u"tone.wav"_s;
        QTest::newRow("no file") << u"nowhere.bmp"_s;
    }

    void pictureRefusesWhatTheViewersRefuse()
    {
        QFETCH(QString, file);
        const QString out = m_dir.filePath(u"refused.png"_s);
        const testing::ToolRun run = tool({u"picture"_s, eraFile(file), out});
        QCOMPARE(run.exitCode, 1);
        QVERIFY(!QFile::exists(out));
        QVERIFY(run.lines.isEmpty());
        QVERIFY(run.errors.startsWith(u"tremidia-content: "_s));
        if (file != u"nowhere.bmp"_s)
            QVERIFY2(run.errors.contains(file), qPrintable(run.errors));
    }

    void mediaTellsTheLengthAndKindOfEachFormat_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("within");
        // One second of sound or pictures; the MIDI tune is four half-second notes.
        QTest::newRow("WAV") << u"tone.wav"_s << u"audio"_s << 1000 << 200;
        QTest::newRow("MIDI") << u"tune.mid"_s << u"audio"_s << 2000 << 200;
        QTest::newRow("MP3") << u"tone.mp3"_s << u"audio"_s << 1000 << 200;
        QTest::newRow("AVI") << u"clip.avi"_s << u"video"_s << 1000 << 200;
        QTest::newRow("MPEG-1") << u"clip.mpg"_s << u"video"_s << 1000 << 200;
        QTest::newRow("WMV") << u"clip.wmv"_s << u"video"_s << 1000 << 200;
        QTest::newRow("ASF") << u"clip.asf"_s << u"video"_s << 1000 << 200;
        // WAVs whose length GStreamer's parser loses: read from their headers.
        QTest::newRow("8-bit WAV of an odd length") << u"tone-u8.wav"_s << u"audio"_s << 500 << 50;
        QTest::newRow("MS ADPCM WAV") << u"tone-msadpcm.wav"_s << u"audio"_s << 1000 << 50;
    }

    void mediaTellsTheLengthAndKindOfEachFormat()
    {
        QFETCH(QString, file);
        QFETCH(QString, kind);
        QFETCH(int, length);
        QFETCH(int, within);
        const testing::ToolRun run = tool({u"media"_s, eraFile(file)});
        QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
        QCOMPARE(run.lines.size(), 1);
        const QStringList fields = run.lines.at(0).split(u'\t');
        QCOMPARE(fields.size(), 2);
        QVERIFY2(qAbs(fields.at(0).toInt() - length) <= within, qPrintable(fields.at(0)));
        QCOMPARE(fields.at(1), kind);
    }

    void mediaRefusesWhatThePlayerCannotPlay_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("a sound cut short") << u"broken.wav"_s;
        QTest::newRow("an MP3 of nothing") << u"broken.mp3"_s;
        QTest::newRow("a video that is text") << u"broken.avi"_s;
        QTest::newRow("a metafile") << u"picture.emf"_s;
    }

    void mediaRefusesWhatThePlayerCannotPlay()
    {
        QFETCH(QString, file);
        const testing::ToolRun run = tool({u"media"_s, eraFile(file)});
        QCOMPARE(run.exitCode, 1);
        QVERIFY(run.lines.isEmpty());
        QVERIFY2(run.errors.contains(file), qPrintable(run.errors));
    }

    void mediaGivesTheReasonInTheProgramsWords_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("reason");
        QTest::newRow("a codec nothing here decodes")
            << u"voxware.wav"_s << u"δεν υπάρχει αποκωδικοποιητής για αυτό το είδος αρχείου"_s;
        QTest::newRow("a sound cut short") << u"broken.wav"_s << u"το αρχείο είναι κατεστραμμένο"_s;
        QTest::newRow("a metafile") << u"picture.emf"_s << u"το αρχείο είναι κατεστραμμένο"_s;
    }

    void mediaGivesTheReasonInTheProgramsWords()
    {
        QFETCH(QString, file);
        QFETCH(QString, reason);
        const testing::ToolRun run = tool({u"media"_s, eraFile(file)});
        QCOMPARE(run.exitCode, 1);
        const QString told = run.errors.mid(run.errors.indexOf(u"tremidia-content: "_s)).trimmed();
        QVERIFY2(told.endsWith(u"«"_s + file + u"»: "_s + reason + u" (5)"_s), qPrintable(run.errors));
        // GStreamer's own words went to the log, before.
        QVERIFY2(run.errors.startsWith(u"tremidia.media: "_s), qPrintable(run.errors));
    }

    void aFileThatNeverOpensIsGivenUpAndTheToolStillQuitsAtOnce()
    {
        // A pipe nobody writes to: GStreamer waits inside its opening for ever, on the
        // engine's thread, which the end of the process then leaves behind.
        const QString pipe = m_dir.filePath(u"stuck.wav"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QProcess process;
        // The player's own limit, whatever the machine's builds give it.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"TREMIDIA_MEDIA_LOAD_LIMIT_MS"_s, QString::number(LoadLimitMs));
        process.setProcessEnvironment(environment);
        QElapsedTimer clock;
        QByteArray said;
        qint64 gaveUp = -1;
        // The moment the tool says it gave up, the last thing it does before it ends.
        QObject::connect(&process, &QProcess::readyReadStandardError, [&] {
            said += process.readAllStandardError();
            if (gaveUp < 0 && said.contains("tremidia-content: "))
                gaveUp = clock.elapsed();
        });
        clock.start();
        process.start(QStringLiteral(TREMIDIA_BINARY_DIR "/bin/tremidia-content"), {u"media"_s, pipe});
        QVERIFY(process.waitForFinished(60000));
        const qint64 ended = clock.elapsed();
        const QString errors = QString::fromUtf8(said + process.readAllStandardError());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 1);
        QVERIFY2(errors.contains(u"«stuck.wav»: το αρχείο είναι κατεστραμμένο"_s), qPrintable(errors));
        qInfo("gave up after %lld ms, ended %lld ms later", gaveUp, ended - gaveUp);
        QVERIFY2(gaveUp >= LoadLimitMs * 9 / 10, qPrintable(QString::number(gaveUp)));
        QVERIFY2(ended - gaveUp < 2000, qPrintable(QString::number(ended - gaveUp)));
    }

    void aMissingFileOrNoFileIsRefused()
    {
        QCOMPARE(tool({u"media"_s, eraFile(u"nowhere.wav"_s)}).exitCode, 1);
        QCOMPARE(tool({u"media"_s}).exitCode, 1);
        QCOMPARE(tool({u"picture"_s, eraFile(u"picture.bmp"_s)}).exitCode, 1);
    }
};

QTEST_GUILESS_MAIN(tst_MediaTool)
#include "tst_mediatool.moc"
