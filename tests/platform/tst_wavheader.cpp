// The WAVE header as the player reads it itself: the length of the sounds of the era whose
// length GStreamer's parser loses, and nothing at all from what is not a WAVE file or
// could keep the reader waiting.

#include <wavheader.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

QString mediaFile(const QString &name)
{
    return QStringLiteral(TREMIDIA_SOURCE_DIR "/tests/data/media/") + name;
}

QByteArray contents(const QString &file)
{
    QFile in(file);
    return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
}

} // namespace

class tst_WavHeader : public QObject
{
    Q_OBJECT

private slots:
    void anEightBitSoundOfAnOddLengthEndsWithItsPaddingByte()
    {
        const auto layout = media::wav::readFile(mediaFile(u"tone-u8.wav"_s));
        QVERIFY(layout);
        QCOMPARE(layout->format, media::wav::FormatPcm);
        QCOMPARE(layout->rate, 11025u);
        QCOMPARE(layout->dataSize, qint64(5513));
        QVERIFY(layout->paddedToEnd);
        QCOMPARE(media::wav::lengthMs(*layout), qint64(500));
    }

    void anAdpcmSoundCountsItsSamplesByItsFactChunkOrItsBlocks()
    {
        const auto layout = media::wav::readFile(mediaFile(u"tone-msadpcm.wav"_s));
        QVERIFY(layout);
        QCOMPARE(layout->format, media::wav::FormatMsAdpcm);
        QCOMPARE(layout->samplesPerBlock, 500u);
        QCOMPARE(layout->factSamples.value_or(0), 11025u);
        QVERIFY(!layout->paddedToEnd);
        QCOMPARE(media::wav::lengthMs(*layout), qint64(1000));

        // Without its fact chunk: 23 whole blocks of 500 samples.
        media::wav::Layout blocks = *layout;
        blocks.factSamples.reset();
        QCOMPARE(media::wav::lengthMs(blocks), qint64(23 * 500 * 1000 / 11025));
        // The last block cut short counts its whole samples and the two of its header.
        blocks.dataSize -= 256 - 7 - 50;
        QCOMPARE(media::wav::lengthMs(blocks), qint64((22 * 500 + 100 + 2) * 1000 / 11025));
    }

    void whatIsNotAWaveFileHasNoHeader()
    {
        QVERIFY(!media::wav::readFile(mediaFile(u"tone.mp3"_s)));
        QVERIFY(!media::wav::readFile(mediaFile(u"nowhere.wav"_s)));
        QVERIFY(!media::wav::readFile(mediaFile(u"broken.wav"_s))); // cut inside its header
        const QByteArray whole = contents(mediaFile(u"tone.wav"_s));
        QVERIFY(media::wav::read(whole, whole.size()));
        QVERIFY(!media::wav::read(whole.left(30), whole.size()));
    }

    void aPipeIsNotReadAtAll()
    {
        // Opening a pipe nobody writes to would wait for ever.
        QTemporaryDir dir;
        const QString pipe = dir.filePath(u"pipe.wav"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QVERIFY(!media::wav::readFile(pipe));
    }
};

QTEST_GUILESS_MAIN(tst_WavHeader)
#include "tst_wavheader.moc"
