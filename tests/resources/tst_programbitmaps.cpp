#include <programbitmaps.h>
#include <runtimeerror.h>

#include <QGuiApplication>
#include <QImage>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <cmath>

namespace {

// How much a picture changes from pixel to pixel: high for sharp edges, low for blur.
double sharpness(const QImage &source)
{
    const QImage image = source.convertToFormat(QImage::Format_ARGB32);
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 1; x < image.width(); ++x) {
            const QRgb a = image.pixel(x - 1, y);
            const QRgb b = image.pixel(x, y);
            const double d = std::abs(qGray(a) * qAlpha(a) - qGray(b) * qAlpha(b)) / 255.0;
            sum += d * d;
        }
    }
    return sum;
}

int distinctColours(const QImage &image)
{
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            colours.insert(image.pixel(x, y));
    return int(colours.size());
}

int visiblePixels(const QImage &image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(image.pixel(x, y)) > 0 ? 1 : 0;
    return count;
}

} // namespace

class tst_ProgramBitmaps : public QObject
{
    Q_OBJECT

private slots:
    void everyPictureRendersAtItsDesignSizeAndIsNotBlank()
    {
        // The renderer warns of anything in a drawing it can't follow.
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
        const QStringList names = resources::names();
        QVERIFY(names.size() >= 57);
        for (const QString &name : names) {
            const QPixmap pix = resources::LoadResPicture(name, 1.0);
            QVERIFY2(!pix.isNull(), qPrintable(name));
            QCOMPARE(pix.deviceIndependentSize().toSize(), resources::designSize(name));
            const QImage image = pix.toImage();
            QVERIFY2(visiblePixels(image) > image.width() * image.height() / 8, qPrintable(name));
            // The line-width palette's lines are plain black on purpose: the widths must read exactly.
            if (name != QStringLiteral("LINEWIDTHS"))
                QVERIFY2(distinctColours(image) > 8, qPrintable(name));
        }
    }

    void designSizesAreTheProgramsOwn()
    {
        QCOMPARE(resources::designSize(QStringLiteral("BGR_1")), QSize(800, 600));
        QCOMPARE(resources::designSize(QStringLiteral("HAND")), QSize(32, 32));
        for (const char *family : {"AGEIA", "KEIMENO", "XARTIS", "AGALMA", "EPIGRAFI", "NAOS", "NOMISMA"}) {
            for (const char *state : {"", "1", "2"}) {
                const QString name = QLatin1String(family) + QLatin1String(state);
                QVERIFY2(resources::exists(name), qPrintable(name));
                QCOMPARE(resources::designSize(name), QSize(50, 47));
            }
        }
        for (const char *name : {"Th", "Sc", "Ac"})
            QCOMPARE(resources::designSize(QLatin1String(name)), QSize(16, 16));
        for (const char *name : {"epigrafi", "keimeno", "agio", "xartis"})
            QCOMPARE(resources::designSize(QLatin1String(name)), QSize(32, 32));
        for (const char *name : {"GO", "GO_DOWN", "EXIT", "EXIT_DOWN"})
            QVERIFY(resources::exists(QLatin1String(name)));
        QVERIFY(resources::exists(QStringLiteral("PAPIROS")));
        for (const char *name : {"PICTURE", "PICTURE_DOWN", "SOUND", "SOUND_DOWN", "VIDEO", "VIDEO_DOWN"})
            QCOMPARE(resources::designSize(QLatin1String(name)), QSize(40, 40));
    }

    void toolbarFacesAreAllOneSize()
    {
        const QStringList keys = {QStringLiteral("exit"), QStringLiteral("first"), QStringLiteral("prev"),
            QStringLiteral("Ploigisi"), QStringLiteral("Network"), QStringLiteral("e-mail"),
            QStringLiteral("Sound"), QStringLiteral("Search"), QStringLiteral("Notes"),
            QStringLiteral("drawing"), QStringLiteral("SearchResources")};
        const QSize size = resources::designSize(QStringLiteral("tlb_exit"));
        QVERIFY(size.isValid());
        for (const QString &key : keys) {
            QCOMPARE(resources::designSize(QStringLiteral("tlb_") + key), size);
            QCOMPARE(resources::designSize(QStringLiteral("tlb_") + key + QStringLiteral("_down")), size);
            const QImage up = resources::LoadResPicture(QStringLiteral("tlb_") + key, 1.0).toImage();
            const QImage down
                = resources::LoadResPicture(QStringLiteral("tlb_") + key + QStringLiteral("_down"), 1.0)
                      .toImage();
            QVERIFY2(up != down, qPrintable(key));
        }
    }

    void tileStatesLookDifferent()
    {
        for (const char *family : {"AGEIA", "KEIMENO", "XARTIS", "AGALMA", "EPIGRAFI", "NAOS", "NOMISMA"}) {
            const QString name = QLatin1String(family);
            const QImage closed = resources::LoadResPicture(name, 1.0).toImage();
            const QImage open = resources::LoadResPicture(name + QLatin1Char('1'), 1.0).toImage();
            const QImage visited = resources::LoadResPicture(name + QLatin1Char('2'), 1.0).toImage();
            QVERIFY(closed != open);
            QVERIFY(closed != visited);
            QVERIFY(open != visited);
        }
    }

    void unknownNameRaisesError326()
    {
        QVERIFY(!resources::exists(QStringLiteral("NOSUCH")));
        QVERIFY(!resources::designSize(QStringLiteral("NOSUCH")).isValid());
        try {
            resources::LoadResPicture(QStringLiteral("NOSUCH"));
            QFAIL("no error raised");
        } catch (const platform::RuntimeError &e) {
            QCOMPARE(e.number(), 326);
            QVERIFY(e.description().contains(QStringLiteral("NOSUCH")));
        }
    }

    void namesAreCaseSensitive()
    {
        QVERIFY(resources::exists(QStringLiteral("keimeno")));
        QVERIFY(resources::exists(QStringLiteral("KEIMENO")));
        QVERIFY(!resources::exists(QStringLiteral("Keimeno")));
    }

    void ratioTwoGivesTwiceThePixelsDrawnAfresh()
    {
        for (const char *name : {"Th", "tlb_Notes", "KEIMENO", "HAND"}) {
            const QString n = QLatin1String(name);
            const QPixmap one = resources::LoadResPicture(n, 1.0);
            const QPixmap two = resources::LoadResPicture(n, 2.0);
            QCOMPARE(two.devicePixelRatio(), 2.0);
            QCOMPARE(two.size(), one.size() * 2);
            QCOMPARE(two.deviceIndependentSize(), one.deviceIndependentSize());
            // A sharp 2x rendering has crisper edges than the 1x one blown up.
            const QImage upscaled
                = one.toImage().scaled(two.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            QVERIFY2(sharpness(two.toImage()) > 1.2 * sharpness(upscaled), name);
        }
    }

    void defaultRatioIsTheScreens()
    {
        const QPixmap pix = resources::LoadResPicture(QStringLiteral("GO"));
        QCOMPARE(pix.devicePixelRatio(), resources::screenPixelRatio());
        QCOMPARE(pix.deviceIndependentSize().toSize(), QSize(64, 64));
    }

    void renderedPicturesAreKept()
    {
        const QPixmap a = resources::LoadResPicture(QStringLiteral("BGR_1"), 1.0);
        const QPixmap b = resources::LoadResPicture(QStringLiteral("BGR_1"), 1.0);
        QCOMPARE(a.cacheKey(), b.cacheKey());
    }

    void backgroundIsOpaqueAndCalmInTheMiddle()
    {
        const QImage image = resources::LoadResPicture(QStringLiteral("BGR_1"), 1.0).toImage();
        for (int y = 0; y < image.height(); y += 7)
            for (int x = 0; x < image.width(); x += 7)
                QCOMPARE(qAlpha(image.pixel(x, y)), 255);
        // Lists and tiles stand in the middle: light and even there.
        double sum = 0, sumSq = 0;
        int n = 0;
        for (int y = 150; y < 450; y += 3) {
            for (int x = 200; x < 600; x += 3) {
                const double g = qGray(image.pixel(x, y));
                sum += g;
                sumSq += g * g;
                ++n;
            }
        }
        const double mean = sum / n;
        const double deviation = std::sqrt(sumSq / n - mean * mean);
        QVERIFY2(mean > 200, qPrintable(QString::number(mean)));
        QVERIFY2(deviation < 12, qPrintable(QString::number(deviation)));
    }

    void parchmentIsOpaque()
    {
        const QImage image = resources::LoadResPicture(QStringLiteral("PAPIROS"), 1.0).toImage();
        for (int y = 0; y < image.height(); y += 5)
            for (int x = 0; x < image.width(); x += 5)
                QCOMPARE(qAlpha(image.pixel(x, y)), 255);
    }

    void handCursorPointsWithItsFingertip()
    {
        const QCursor cursor = resources::LoadResCursor(QStringLiteral("HAND"));
        QCOMPARE(cursor.shape(), Qt::BitmapCursor);
        QCOMPARE(cursor.hotSpot(), QPoint(12, 1));
        // The hot spot lies on the drawn finger, not in the empty corner.
        const QImage image = resources::LoadResPicture(QStringLiteral("HAND"), 1.0).toImage();
        QVERIFY(qAlpha(image.pixel(12, 2)) > 0);
    }

    void iconsRenderAtTheSizeAsked()
    {
        const QIcon icon = resources::LoadResIcon(QStringLiteral("agio"));
        QVERIFY(!icon.isNull());
        const QPixmap pix = icon.pixmap(QSize(32, 32), 2.0);
        QCOMPARE(pix.size(), QSize(64, 64));
        QVERIFY(visiblePixels(pix.toImage()) > 0);
        QVERIFY_THROWS_EXCEPTION(platform::RuntimeError, resources::LoadResIcon(QStringLiteral("none")));
    }
};

QTEST_MAIN(tst_ProgramBitmaps)
#include "tst_programbitmaps.moc"
