#include "metafiles.h"

#include <metafile.h>
#include <picturefile.h>
#include <rtf.h>
#include <runtimeerror.h>

#include <QBuffer>
#include <QFile>
#include <QImageWriter>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextImageFormat>

namespace {

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(bytes);
}

QByteArray pngOf(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

// The CRC that closes a PNG chunk, over its type and data.
quint32 crc32(const QByteArray &bytes)
{
    quint32 crc = 0xFFFFFFFFu;
    for (const char c : bytes) {
        crc ^= quint8(c);
        for (int k = 0; k < 8; ++k)
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

QByteArray hex(const QByteArray &bytes)
{
    QByteArray out = bytes.toHex();
    for (qsizetype i = 64; i < out.size(); i += 65)
        out.insert(i, '\n');
    return out;
}

// The first picture of a document read from RTF.
QImage firstPicture(const QTextDocument &document, QSizeF *shownSize = nullptr)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextCharFormat format = it.fragment().charFormat();
            if (!format.isImageFormat())
                continue;
            const QTextImageFormat image = format.toImageFormat();
            if (shownSize)
                *shownSize = QSizeF(image.width(), image.height());
            return document.resource(QTextDocument::ImageResource, QUrl(image.name())).value<QImage>();
        }
    }
    return {};
}

} // namespace

class tst_PictureFile : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

    QString path(const char *name) const { return m_dir.filePath(QString::fromUtf8(name)); }
    static QString eraFile(const QString &name)
    {
        return QStringLiteral(TREMIDIA_SOURCE_DIR "/tests/data/media/") + name;
    }

    static void expectError(const QString &file, int number, const QString &mentioned)
    {
        try {
            pictures::LoadPicture(file);
            QFAIL("the picture was read");
        } catch (const platform::RuntimeError &e) {
            QCOMPARE(e.number(), number);
            QVERIFY2(e.description().contains(mentioned), qPrintable(e.description()));
        }
    }

private slots:
    void aMuseumScanOfTwelveThousandByNineThousandIsRead()
    {
        QImage scan(12000, 9000, QImage::Format_RGB888);
        scan.fill(QColor(180, 150, 110));
        QImageWriter writer(path("scan.jpg"), "JPEG");
        writer.setQuality(30);
        QVERIFY(writer.write(scan));
        scan = QImage();
        const QImage read = pictures::LoadPicture(path("scan.jpg"));
        QCOMPARE(read.size(), QSize(12000, 9000));
    }

    void anAbsurdSizeIsRefusedBeforeAnythingIsAllocated()
    {
        // A PNG whose header claims 60,000 by 60,000 pixels (14 GB) and holds nothing more.
        QByteArray png = pngOf(QImage(1, 1, QImage::Format_RGB32));
        const qsizetype type = png.indexOf("IHDR");
        QByteArray ihdr = png.mid(type, 17);
        for (int i = 0; i < 2; ++i)
            ihdr.replace(4 + 4 * i, 4, QByteArray::fromHex("0000ea60"));
        png.replace(type, 17, ihdr);
        png.replace(
            type + 17, 4, QByteArray::fromHex(QByteArray::number(crc32(ihdr), 16).rightJustified(8, '0')));
        writeFile(path("huge.png"), png);
        expectError(path("huge.png"), 7, QStringLiteral("huge.png"));
    }

    void aTruncatedPngGivesTheInvalidPictureErrorNamingTheFile()
    {
        QImage picture(200, 150, QImage::Format_RGB32);
        picture.fill(Qt::darkCyan);
        const QByteArray png = pngOf(picture);
        writeFile(path("Κνωσός μισό.png"), png.left(png.size() / 3));
        expectError(path("Κνωσός μισό.png"), 481, QStringLiteral("Κνωσός μισό.png"));
        writeFile(path("empty.png"), QByteArray());
        expectError(path("empty.png"), 481, QStringLiteral("empty.png"));
    }

    void aMissingFileIsFileNotFound() { expectError(path("nowhere.png"), 53, QString()); }

    void aWindowsMetafileIsDrawnAtItsOwnSize()
    {
        // Two inches by one and a half: 192 by 144 pixels on a 96-dpi screen.
        writeFile(path("drawing.wmf"), metafiles::filledRectangle(2880, 2160, 1440, 0x0000FF));
        const QImage drawn = pictures::LoadPicture(path("drawing.wmf"));
        QCOMPARE(drawn.size(), QSize(192, 144));
        QCOMPARE(drawn.pixelColor(96, 72), QColor(255, 0, 0));
        QCOMPARE(drawn.pixelColor(5, 5), QColor(255, 255, 255));
        QCOMPARE(drawn.pixelColor(186, 138), QColor(255, 255, 255));
    }

    void aMetafileThatIsNotOneIsAnInvalidPicture()
    {
        QByteArray broken = metafiles::filledRectangle(2880, 2160, 1440, 0x0000FF);
        broken.truncate(30);
        writeFile(path("broken.wmf"), broken);
        expectError(path("broken.wmf"), 481, QStringLiteral("broken.wmf"));
    }

    void anEnhancedMetafileWithoutDrawingsShowsWhiteAtItsFrameSize()
    {
        // 50.8 by 25.4 mm: 192 by 96 pixels.
        writeFile(path("clip.emf"), metafiles::enhancedHeaderOnly(QSize(5080, 2540)));
        const QImage frame = pictures::LoadPicture(path("clip.emf"));
        QCOMPARE(frame.size(), QSize(192, 96));
        QCOMPARE(frame.pixelColor(96, 48), QColor(255, 255, 255));
    }

    void aMetafileInsideRtfIsDrawnAtItsGoalSize()
    {
        const QByteArray wmf = metafiles::filledRectangle(2880, 2160, 1440, 0x00FF00);
        // 2880 by 2160 twips is 192 by 144 pixels.
        const QByteArray rtf = "{\\rtf1\\ansi\\ansicpg1253 {\\pict\\wmetafile8\\picw5080\\pich3810"
                               "\\picwgoal2880\\pichgoal2160\n"
            + hex(wmf.mid(22)) + "}\\par }";
        QTextDocument document;
        richtext::readDocument(rtf, &document);
        QSizeF shown;
        const QImage drawn = firstPicture(document, &shown);
        QCOMPARE(shown, QSizeF(192, 144));
        QCOMPARE(drawn.size(), QSize(192, 144));
        QCOMPARE(drawn.pixelColor(96, 72), QColor(0, 255, 0));
    }

    void anEnhancedMetafileInsideRtfWithoutDrawingsKeepsItsPlace()
    {
        const QByteArray rtf = "{\\rtf1\\ansi {\\pict\\emfblip\\picw5080\\pich2540\n"
            + hex(metafiles::enhancedHeaderOnly(QSize(5080, 2540))) + "}\\par }";
        QTextDocument document;
        richtext::readDocument(rtf, &document);
        QSizeF shown;
        const QImage frame = firstPicture(document, &shown);
        QVERIFY(!frame.isNull());
        QCOMPARE(frame.size(), shown.toSize());
        QCOMPARE(frame.pixelColor(frame.width() / 2, frame.height() / 2), QColor(255, 255, 255));
    }

    void eachPictureFormatOfTheEraIsRead_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QSize>("size");
        QTest::newRow("BMP") << QStringLiteral("picture.bmp") << QSize(48, 32);
        QTest::newRow("GIF") << QStringLiteral("picture.gif") << QSize(48, 32);
        QTest::newRow("JPEG") << QStringLiteral("picture.jpg") << QSize(48, 32);
        QTest::newRow("WMF") << QStringLiteral("picture.wmf") << QSize(100, 50);
        QTest::newRow("EMF") << QStringLiteral("picture.emf") << QSize(100, 50);
    }

    void eachPictureFormatOfTheEraIsRead()
    {
        QFETCH(QString, file);
        QFETCH(QSize, size);
        const QImage picture = pictures::LoadPicture(eraFile(file));
        QCOMPARE(picture.size(), size);
    }

    void anEnhancedMetafileIsDrawnAtItsFrameSize()
    {
        // A red rectangle from (10, 10) to (60, 40) and a blue ellipse round (72, 32).
        const QImage drawn = pictures::LoadPicture(eraFile(QStringLiteral("picture.emf")));
        QCOMPARE(drawn.size(), QSize(100, 50));
        QCOMPARE(drawn.pixelColor(35, 25), QColor(255, 0, 0));
        QCOMPARE(drawn.pixelColor(72, 33), QColor(0, 0, 255));
        QCOMPARE(drawn.pixelColor(3, 46), QColor(255, 255, 255));
    }

    void anEnhancedMetafileThatCannotBeDrawnIsAnInvalidPictureNamingTheFile()
    {
        expectError(eraFile(QStringLiteral("broken.emf")), 481, QStringLiteral("broken.emf"));
    }

    void anEnhancedMetafileInsideRtfIsDrawnAtItsGoalSize()
    {
        QFile file(eraFile(QStringLiteral("picture.emf")));
        QVERIFY(file.open(QIODevice::ReadOnly));
        // 3000 by 1500 twips is 200 by 100 pixels: the drawing at twice its own size.
        const QByteArray rtf
            = "{\\rtf1\\ansi {\\pict\\emfblip\\picw2646\\pich1323\\picwgoal3000\\pichgoal1500\n"
            + hex(file.readAll()) + "}\\par }";
        QTextDocument document;
        richtext::readDocument(rtf, &document);
        QSizeF shown;
        const QImage drawn = firstPicture(document, &shown);
        QCOMPARE(shown, QSizeF(200, 100));
        QCOMPARE(drawn.size(), QSize(200, 100));
        QCOMPARE(drawn.pixelColor(70, 50), QColor(255, 0, 0));
        QCOMPARE(drawn.pixelColor(145, 65), QColor(0, 0, 255));
    }
};

QTEST_MAIN(tst_PictureFile)
#include "tst_picturefile.moc"
