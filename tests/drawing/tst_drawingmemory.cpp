// A picture too large for the memory left: drawing on it gives the program's error box
// (7) and the picture stays as it was, instead of writing through a row that was never
// allocated.
#include "drawingtesting.h"

#include <sys/resource.h>

#include <QClipboard>
#include <QFile>
#include <QMimeData>

using namespace testing;

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool AddressSanitizer = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool AddressSanitizer = true;
#else
constexpr bool AddressSanitizer = false;
#endif
#else
constexpr bool AddressSanitizer = false;
#endif

// The signature and header of a PNG picture of the size given, with hardly any pixels.
QByteArray pngClaiming(quint32 width, quint32 height)
{
    auto be32 = [](QByteArray &out, quint32 v) {
        for (int shift = 24; shift >= 0; shift -= 8)
            out.append(char((v >> shift) & 0xFF));
    };
    QByteArray chunk("IHDR");
    be32(chunk, width);
    be32(chunk, height);
    chunk.append(char(8)).append(char(2)).append(char(0)).append(char(0)).append(char(0));
    quint32 crc = 0xFFFFFFFFu;
    for (char c : std::as_const(chunk)) {
        crc ^= quint8(c);
        for (int k = 0; k < 8; ++k)
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
    }
    QByteArray png("\x89PNG\r\n\x1a\n", 8);
    be32(png, 13);
    png.append(chunk);
    be32(png, ~crc);
    // The start of the pixel data, where a reader has learnt the size.
    be32(png, 16);
    png.append("IDAT").append(QByteArray(16, '\0'));
    be32(png, 0);
    return png;
}

// The address space the process holds now, in bytes.
qint64 addressSpace()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmSize:"))
            return line.mid(7).trimmed().split(' ').value(0).toLongLong() * 1024;
    }
    return -1;
}

// Lets the process grow by `room` bytes more, for as long as it lives.
class AddressSpaceLimit
{
public:
    explicit AddressSpaceLimit(qint64 room)
    {
        getrlimit(RLIMIT_AS, &m_before);
        rlimit limited = m_before;
        limited.rlim_cur = rlim_t(addressSpace() + room);
        m_set = setrlimit(RLIMIT_AS, &limited) == 0;
    }
    ~AddressSpaceLimit() { setrlimit(RLIMIT_AS, &m_before); }
    bool isSet() const { return m_set; }

private:
    rlimit m_before {};
    bool m_set = false;
};

} // namespace

class tst_DrawingMemory : public QObject, public DrawingFixture
{
    Q_OBJECT

    AnsweringBoxes m_boxes;

private slots:
    void init()
    {
        beginSession();
        m_boxes.install(host());
    }
    void cleanup() { endSession(); }

    void drawingOnAPictureTooLargeForTheMemoryLeftIsErrorSeven()
    {
        if (AddressSanitizer)
            QSKIP("the address sanitizer reserves more address space than any limit leaves");
        frmDrawing w(session());
        w.Load();
        w.show();
        QImage big(8000, 8000, QImage::Format_RGB32);
        QVERIFY(!big.isNull());
        big.fill(Qt::white);
        w.picPhoto->setPicture(big);
        big = QImage();
        const qint64 key = w.picPhoto->Picture().cacheKey();
        chooseTool(w, QStringLiteral("Pen"));
        {
            // The first stroke needs pixels of its own: 256 MB that are not there.
            AddressSpaceLimit limit(64 * 1024 * 1024);
            QVERIFY(limit.isSet());
            QTest::mousePress(w.picPhoto, Qt::LeftButton, {}, QPoint(10, 10));
            QTest::mouseMove(w.picPhoto, QPoint(60, 40));
            QTest::mouseRelease(w.picPhoto, Qt::LeftButton, {}, QPoint(60, 40));
        }
        QCOMPARE(m_boxes.size(), 1);
        QCOMPARE(m_boxes.first().text, QStringLiteral("Λάθος # 7\r\nΗ μνήμη δεν επαρκεί"));
        QCOMPARE(m_boxes.first().style, int(platform::vbCritical));
        QCOMPARE(m_boxes.first().title, QStringLiteral("Τρεμίδια"));
        QCOMPARE(w.picPhoto->Picture().cacheKey(), key);
        QVERIFY(!w.MouseIsDown());

        // With the memory back the same stroke draws.
        QTest::mousePress(w.picPhoto, Qt::LeftButton, {}, QPoint(10, 10));
        QTest::mouseMove(w.picPhoto, QPoint(60, 40));
        QTest::mouseRelease(w.picPhoto, Qt::LeftButton, {}, QPoint(60, 40));
        QCOMPARE(m_boxes.size(), 1);
        QCOMPARE(w.picPhoto->Picture().pixel(10, 10), qRgb(0, 0, 0));
    }

    void aPastedBitmapLargerThanAPictureFileMayBeIsErrorSevenAndChangesNothing()
    {
        frmDrawing w(session());
        w.Load();
        const QImage picture = solidPicture(QSize(30, 20), Qt::green);
        w.picPhoto->setPicture(picture);
        // A picture whose header claims 20,000 by 20,000 pixels.
        auto *data = new QMimeData;
        data->setData(QStringLiteral("image/png"), pngClaiming(20000, 20000));
        QGuiApplication::clipboard()->setMimeData(data);
        emit w.tlbGeneral->ButtonClick(QStringLiteral("Paste"));
        QCOMPARE(m_boxes.size(), 1);
        QVERIFY2(m_boxes.first().text.startsWith(QStringLiteral("Λάθος # 7\r\n")),
            qPrintable(m_boxes.first().text));
        QCOMPARE(w.picPhoto->Picture(), picture);
    }
};

QTEST_MAIN(tst_DrawingMemory)
#include "tst_drawingmemory.moc"
