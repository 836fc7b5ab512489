#include "metafiles.h"

#include <metafile.h>
#include <picturefile.h>
#include <runtimeerror.h>

#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <functional>

// Damaged picture files, most of them found by the picture fuzzer (tests/platform/fuzz):
// each ends in a picture or in the invalid-picture error, soon, and without asking for
// memory that the file cannot fill.
namespace {

QString damaged(const char *name)
{
    return QStringLiteral(TREMIDIA_SOURCE_DIR "/tests/data/pictures/") + QString::fromUtf8(name);
}

qint64 statusKb(const char *field)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(field))
            return line.mid(qsizetype(qstrlen(field))).trimmed().split(' ').value(0).toLongLong();
    }
    return -1;
}

// How far the address space grew beyond what it was while `work` ran, in MB. An
// allocation counts even when its pages are never touched, which is how a reader that
// believes a header's sizes shows.
qint64 addressSpaceGrowthMb(const std::function<void()> &work)
{
    const qint64 before = statusKb("VmSize:");
    work();
    return (statusKb("VmPeak:") - before) / 1024;
}

int errorNumberReading(const QString &file)
{
    try {
        pictures::LoadPicture(file);
    } catch (const platform::RuntimeError &e) {
        return e.number();
    }
    return 0;
}

} // namespace

class tst_DamagedPictures : public QObject
{
    Q_OBJECT

private slots:
    // libwmf allocated what the header claims as the largest record before reading any.
    void aMetafileClaimingAHugeRecordIsRefusedWithoutThatAllocation()
    {
        int number = 0;
        const qint64 growth
            = addressSpaceGrowthMb([&] { number = errorNumberReading(damaged("huge_largest_record.wmf")); });
        QCOMPARE(number, platform::errors::InvalidPicture);
        QVERIFY2(growth < 1024, qPrintable(QStringLiteral("%1 MB").arg(growth)));
    }

    // A well-made metafile whose header overstates its largest record is drawn as it is.
    void aMetafileWhoseHeaderOverstatesItsLargestRecordIsDrawnWithoutThatAllocation()
    {
        QByteArray wmf = metafiles::filledRectangle(100, 50, 96, 0x0000FF);
        // The standard header follows the 22 bytes of the placeable one; the largest
        // record, in words, is at its byte 12.
        for (int i = 0; i < 4; ++i)
            wmf[22 + 12 + i] = char(0xFF);
        QImage picture;
        const qint64 growth = addressSpaceGrowthMb(
            [&] { picture = pictures::pictureFromBytes(wmf, QStringLiteral("x.wmf")); });
        QCOMPARE(picture.size(), QSize(100, 50));
        QCOMPARE(picture.pixelColor(50, 25), QColor(Qt::red));
        QVERIFY2(growth < 4096, qPrintable(QStringLiteral("%1 MB").arg(growth)));
    }

    // A bitmap record whose header claims a bitmap of 5 GB in a file of a few hundred bytes.
    void aBitmapRecordClaimingMoreThanTheFileHoldsIsNotAllocated()
    {
        QElapsedTimer clock;
        clock.start();
        int number = -1;
        const qint64 growth
            = addressSpaceGrowthMb([&] { number = errorNumberReading(damaged("huge_bitmap_record.wmf")); });
        QVERIFY(number == 0 || number == platform::errors::InvalidPicture);
        QVERIFY2(growth < 4096, qPrintable(QStringLiteral("%1 MB").arg(growth)));
        QVERIFY(clock.elapsed() < 20000);
    }

    // libwmf's bitmap reader went round for ever on a two-by-two bitmap with a kind of
    // compression it does not know.
    void aBitmapWithAnUnknownCompressionEndsAsAnInvalidPicture()
    {
        QCOMPARE(errorNumberReading(damaged("looping_bitmap_header.wmf")), platform::errors::InvalidPicture);
    }

    // libwmf stretched a two-by-two bitmap to 1712 times the picture's window width, pixel
    // by pixel, before clipping it to the picture: minutes of work.
    void aBitmapStretchedFarBeyondThePictureIsRefusedAtOnce()
    {
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(errorNumberReading(damaged("stretched_bitmap.wmf")), platform::errors::InvalidPicture);
        QVERIFY2(clock.elapsed() < 10000, qPrintable(QStringLiteral("%1 ms").arg(clock.elapsed())));
    }

    // libwmf's drawing device worked on this one for minutes, inside the library. It draws
    // in a child process now, which is stopped when it runs past its limit.
    void aMetafileThatKeepsLibwmfBusyIsGivenUpWithinItsLimit()
    {
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(errorNumberReading(damaged("slow_drawing.wmf")), platform::errors::InvalidPicture);
        QVERIFY2(clock.elapsed() < 30000, qPrintable(QStringLiteral("%1 ms").arg(clock.elapsed())));
    }

    // A metafile is still drawn whole when libwmf draws it away from the program.
    void aMetafileDrawnInTheChildComesBackWhole()
    {
        const QImage picture
            = pictures::pictureFromBytes(metafiles::filledRectangle(120, 80, 96, 0x00FF00), QStringLiteral("x.wmf"));
        QCOMPARE(picture.size(), QSize(120, 80));
        QCOMPARE(picture.pixelColor(60, 40), QColor(Qt::green));
    }

    // libemf2svg read the header's description wherever the header pointed, and with a
    // length of nought up to a terminating zero, past the end of the file.
    void anEnhancedMetafileWhoseDescriptionLiesOutsideItsHeaderIsDrawnWithoutIt_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QSize>("size");
        QTest::newRow("to a zero past the end")
            << damaged("description_past_the_end.emf") << QSize(2880, 2880);
        QTest::newRow("far away") << damaged("description_far_away.emf") << QSize(100, 50);
    }

    void anEnhancedMetafileWhoseDescriptionLiesOutsideItsHeaderIsDrawnWithoutIt()
    {
        QFETCH(QString, file);
        QFETCH(QSize, size);
        QCOMPARE(pictures::LoadPicture(file).size(), size);
    }

    // A placeable header of a few bytes asked for a drawing of 8192 by 8192, which took
    // half a minute and then failed, larger than an image reader takes.
    void aMetafileAskingForTheLargestDrawingIsDrawnSmallerInItsShape()
    {
        QElapsedTimer clock;
        clock.start();
        const QImage picture = pictures::LoadPicture(damaged("largest_drawing.wmf"));
        QCOMPARE(picture.size(), QSize(2880, 2880));
        QVERIFY2(clock.elapsed() < 15000, qPrintable(QStringLiteral("%1 ms").arg(clock.elapsed())));
    }

    void theDrawingSizeKeepsItsShapeWithinTheLargestDrawing()
    {
        QCOMPARE(pictures::drawingSize(QSize(800, 600)), QSize(800, 600));
        QCOMPARE(pictures::drawingSize(QSize(20000, 100)), QSize(8192, 100));
        QCOMPARE(pictures::drawingSize(QSize(8192, 4096)), QSize(4072, 2036));
        QCOMPARE(pictures::drawingSize(QSize(0, -5)), QSize(1, 1));
    }
};

QTEST_MAIN(tst_DamagedPictures)
#include "tst_damagedpictures.moc"
