#include "../support/testsession.h"

#include <designedcolours.h>
#include <errorpolicy.h>
#include <frmtooltips.h>
#include <msgbox.h>
#include <runtimeerror.h>
#include <tipgeometry.h>
#include <twips.h>
#include <viewingwindows.h>
#include <wordhighlight.h>

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QMenu>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QPainter>
#include <QTest>
#include <QTextLayout>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

// A text of exactly that many characters, in words so that it wraps.
QString textOf(int length)
{
    QString text;
    while (text.size() < length)
        text += u"λέξη "_s;
    text.truncate(length);
    if (text.endsWith(u' '))
        text[text.size() - 1] = u'ς';
    return text;
}

QFont tipFont()
{
    QFont font(u"Arial"_s);
    font.setPointSize(10);
    return font;
}

QString writePicture(const QTemporaryDir &dir, const QString &name, QSize size, QColor color)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    const QString path = dir.filePath(name);
    image.save(path);
    return path;
}

// Text's pixels: dark enough to be a letter's, on the tip's light background.
bool isInk(QRgb pixel)
{
    return qGray(pixel) < 90;
}

// The text of a tip, drawn once as the tip draws it and once from its lines.
QImage drawnByPainter(const QString &text, const QRect &block, QSize size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setFont(tipFont());
    painter.setPen(Qt::black);
    painter.drawText(block, Qt::TextWordWrap | Qt::AlignLeft | Qt::AlignTop, text);
    return image;
}

QImage drawnFromLines(const QString &text, const QRect &block, QSize size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setFont(tipFont());
    painter.setPen(Qt::black);
    painter.setClipRect(block);
    tipgeometry::textLines(painter.font(), text, block.width())->draw(&painter, block.topLeft());
    return image;
}

QRect screenTwips()
{
    const QRect s = QGuiApplication::primaryScreen()->geometry();
    return QRect(0, 0, platform::twipsFromPixelsX(s.width()), platform::twipsFromPixelsY(s.height()));
}

} // namespace

class tst_frmToolTips : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::unique_ptr<testing::TestSession> m_s;

    // The boxes shown, as text|style|title.
    QStringList messages() const
    {
        QStringList texts;
        for (const testing::ShownBox &box : std::as_const(m_s->host->boxes))
            texts << u"%1|%2|%3"_s.arg(box.text).arg(box.style).arg(box.title);
        return texts;
    }
    // The session's tip, made when there is none.
    frmToolTips *sharedTip() { return m_s->session->window<frmToolTips>(Session::Window::Tip); }
    frmToolTips *existingTip() { return m_s->session->window<frmToolTips>(Session::Window::Tip, false); }

    frmToolTips *showTip(const QString &text, const QString &picture, int left = 3000, int top = 3000)
    {
        frmToolTips *tip = sharedTip();
        tip->setTipLeft(left);
        tip->setTipTop(top);
        tip->setTipText(text);
        tip->setTipPicture(picture);
        tip->Show(nullptr);
        return tip;
    }

    void closeAll()
    {
        if (frmToolTips *tip = existingTip())
            tip->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

private slots:
    void init()
    {
        m_s = std::make_unique<testing::TestSession>();
        registerViewingWindows(*m_s);
    }

    void cleanup()
    {
        closeAll();
        m_s.reset();
    }

    // --- Geometry ---------------------------------------------------------------------

    void theWidthLimitFollowsTheTextLength()
    {
        QCOMPARE(tipgeometry::textWidthLimit(0), 400);
        QCOMPARE(tipgeometry::textWidthLimit(1), 200);
        QCOMPARE(tipgeometry::textWidthLimit(200), 200);
        QCOMPARE(tipgeometry::textWidthLimit(201), 300);
        QCOMPARE(tipgeometry::textWidthLimit(400), 300);
        QCOMPARE(tipgeometry::textWidthLimit(401), 400);
    }

    void textWrapsAtItsLimit_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("limit");
        QTest::newRow("200") << 200 << 200;
        QTest::newRow("201") << 201 << 300;
        QTest::newRow("400") << 400 << 300;
        QTest::newRow("401") << 401 << 400;
    }

    void textWrapsAtItsLimit()
    {
        QFETCH(int, length);
        QFETCH(int, limit);
        const QFontMetrics metrics(tipFont());
        const auto l = tipgeometry::layOut(metrics, textOf(length), QSize());
        QVERIFY(l.hasText);
        QCOMPARE(l.text.topLeft(), QPoint(12, 12));
        QVERIFY2(l.text.width() <= limit, qPrintable(QString::number(l.text.width())));
        // Wrapped close to the limit: a narrower limit would not have held it.
        QVERIFY2(l.text.width() > limit - 60, qPrintable(QString::number(l.text.width())));
        QCOMPARE(l.widthTwips, (12 + l.text.width() + 12) * 15);
        QCOMPARE(l.heightTwips, (12 + l.text.height() + 12) * 15);
    }

    void aPictureWiderThanTheLimitWidensTheTextBlock()
    {
        const QFontMetrics metrics(tipFont());
        const auto narrow = tipgeometry::layOut(metrics, textOf(190), QSize());
        const auto wide = tipgeometry::layOut(metrics, textOf(190), QSize(360, 80));
        QVERIFY(narrow.text.width() <= 200);
        QVERIFY(wide.text.width() > 200);
        QVERIFY(wide.text.width() <= 360);
        QCOMPARE(wide.text.topLeft(), QPoint(12, 12));
        QCOMPARE(wide.picture, QRect(12, 12 + wide.text.height() + 12, 360, 80));
        QCOMPARE(wide.widthTwips, (12 + 360 + 12) * 15);
        QCOMPARE(wide.heightTwips, (wide.picture.bottom() + 1 + 12) * 15);
    }

    void aPictureAloneStandsInTheMargin()
    {
        const auto l = tipgeometry::layOut(QFontMetrics(tipFont()), QString(), QSize(100, 50));
        QVERIFY(!l.hasText);
        QCOMPARE(l.picture, QRect(12, 12, 100, 50));
        QCOMPARE(l.widthTwips, 124 * 15);
        QCOMPARE(l.heightTwips, 74 * 15);
    }

    void theTipIsCentredBelowTheMouse()
    {
        QCOMPARE(tipgeometry::place(6000, 3000, 2000, 1000, QSize(15360, 11520)), QPoint(5000, 3200));
    }

    void nearTheRightEdgeTheTipMeetsTheScreensWidth()
    {
        QCOMPARE(tipgeometry::place(15000, 3000, 2000, 1000, QSize(15360, 11520)).x(), 15360 - 2000);
        QCOMPARE(tipgeometry::place(100, 3000, 2000, 1000, QSize(15360, 11520)).x(), 0);
    }

    void nearTheBottomTheTipEndsAboveTheBottomStrip()
    {
        QCOMPARE(tipgeometry::place(6000, 11000, 2000, 1000, QSize(15360, 11520)).y(), 11520 - 1000 - 450);
        QCOMPARE(tipgeometry::place(6000, 100, 2000, 20000, QSize(15360, 11520)).y(), 0);
    }

    void theShapeIsTheTipAndItsShadow()
    {
        const QRegion shape = tipgeometry::outline(100, 50);
        QVERIFY(shape.contains(QPoint(0, 0))); // frame, top left
        QVERIFY(shape.contains(QPoint(99, 49))); // frame, bottom right
        QVERIFY(shape.contains(QPoint(105, 30))); // shadow at the right
        QVERIFY(shape.contains(QPoint(30, 55))); // shadow below
        QVERIFY(shape.contains(QPoint(109, 59))); // shadow's far corner
        QVERIFY(!shape.contains(QPoint(105, 5))); // beside the shadow's top
        QVERIFY(!shape.contains(QPoint(5, 55))); // beside the shadow's left
        QVERIFY(!shape.contains(QPoint(110, 60))); // outside
        QVERIFY(!tipgeometry::shadow(100, 50).contains(QPoint(50, 25)));
    }

    // --- The window -------------------------------------------------------------------

    void aTextTipIsMeasuredPlacedPaintedAndShaped()
    {
        frmToolTips *tip = showTip(textOf(120), QString(), 6000, 3000);
        const auto &l = tip->layout();
        const int w = l.widthTwips / 15;
        const int h = l.heightTwips / 15;
        QCOMPARE(tip->size(), QSize(w + 20, h + 20));
        QCOMPARE(tip->pos().x(), (6000 - l.widthTwips / 2) / 15);
        QCOMPARE(tip->pos().y(), 3200 / 15);
        const QImage image = tip->image().toImage();
        QCOMPARE(QColor(image.pixel(w - 1, h / 2)), QColor(51, 51, 51));
        QCOMPARE(QColor(image.pixel(w / 2, 0)), QColor(51, 51, 51));
        QCOMPARE(QColor(image.pixel(w + 5, h + 5)), QColor(128, 128, 128));
        QCOMPARE(QColor(image.pixel(w + 5, h / 2)), QColor(128, 128, 128));
        QCOMPARE(QColor(image.pixel(5, h / 2)), platform::designedPalette().color(QPalette::ToolTipBase));
        QVERIFY(tip->mask().contains(QPoint(w + 5, h + 5)));
        QVERIFY(!tip->mask().contains(QPoint(w + 5, 5)));
        QVERIFY(!tip->mask().contains(QPoint(w + 15, h + 15)));
        QVERIFY(tip->mnuCopyText->isVisible());
        QVERIFY(!tip->mnuCopyPicture->isVisible());
        QCOMPARE(tip->font().pointSize(), 10);
        QDir().mkpath(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR));
        tip->grab().save(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR "/tip_text.png"));
    }

    void aTipWithTextAndPictureOffersBothCopies()
    {
        const QString picture = writePicture(m_dir, u"pic.png"_s, QSize(150, 90), QColor(200, 30, 30));
        frmToolTips *tip = showTip(textOf(80), picture);
        QVERIFY(tip->mnuCopyText->isVisible());
        QVERIFY(tip->mnuCopyPicture->isVisible());
        const QRect p = tip->layout().picture;
        QCOMPARE(p.size(), QSize(150, 90));
        QCOMPARE(QColor(tip->image().toImage().pixel(p.center())), QColor(200, 30, 30));
        QVERIFY(tip->TipPicture() != u"0"_s);
        tip->grab().save(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR "/tip_text_picture.png"));

        tip->mnuCopyText->trigger();
        QCOMPARE(QGuiApplication::clipboard()->text(), textOf(80));
        tip->mnuCopyPicture->trigger();
        QCOMPARE(QGuiApplication::clipboard()->image().size(), QSize(150, 90));
        QVERIFY(existingTip()); // copying does not close
    }

    void aPictureAloneHasNoTextCopy()
    {
        const QString picture = writePicture(m_dir, u"alone.png"_s, QSize(60, 40), Qt::blue);
        frmToolTips *tip = showTip(QString(), picture);
        QVERIFY(!tip->mnuCopyText->isVisible());
        QVERIFY(tip->mnuCopyPicture->isVisible());
        QCOMPARE(tip->size(), QSize(84 + 20, 64 + 20));
    }

    void aTipWithNothingTellsSoAndStandsUnshaped()
    {
        frmToolTips *tip = sharedTip();
        const QSize before = tip->size();
        tip->setTipText(QString());
        tip->setTipPicture(QString());
        tip->Show(nullptr);
        QCOMPARE(messages(), QStringList {u"ΔΕΝ υπάρχει ΟΥΤΕ εικόνα ΟΥΤΕ κείμενο|0|Τρεμίδια"_s});
        QVERIFY(existingTip());
        QCOMPARE(tip->size(), before);
        QVERIFY(tip->mask().isEmpty());
        QVERIFY(!tip->mnuCopyPicture->isVisible());
        QCOMPARE(tip->TipPicture(), u"0"_s);
    }

    void aMissingPictureFailsInTheSetter()
    {
        frmToolTips *tip = sharedTip();
        try {
            tip->setTipPicture(m_dir.filePath(u"none.jpg"_s));
            QFAIL("no error");
        } catch (const platform::RuntimeError &e) {
            QCOMPARE(e.number(), 53);
        }
    }

    void rightClickOnTheShadowOpensTheMenu()
    {
        frmToolTips *tip = showTip(textOf(50), QString());
        const int w = tip->layout().widthTwips / 15;
        const int h = tip->layout().heightTwips / 15;
        QTest::mouseClick(tip, Qt::RightButton, {}, QPoint(w + 5, h + 5));
        QTRY_VERIFY(tip->mnuPopUp->isVisible());
        tip->mnuPopUp->hide();
        QVERIFY(existingTip());
    }

    void leftClickOnTheShadowClosesTheTip()
    {
        frmToolTips *tip = showTip(textOf(50), QString());
        QPointer<frmToolTips> watch(tip);
        const int w = tip->layout().widthTwips / 15;
        const int h = tip->layout().heightTwips / 15;
        QTest::mouseClick(tip, Qt::LeftButton, {}, QPoint(w + 5, h + 5));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(watch.isNull());
        QVERIFY(!existingTip());
        // The next tip starts from nothing.
        QCOMPARE(sharedTip()->TipText(), QString());
    }

    void escapeClosesTheTip()
    {
        QPointer<frmToolTips> tip(showTip(textOf(50), QString()));
        QTest::keyClick(tip, Qt::Key_Escape);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(tip.isNull());
    }

    void losingTheActivationClosesTheTip()
    {
        QWidget other;
        other.show();
        QVERIFY(QTest::qWaitForWindowExposed(&other));
        QPointer<frmToolTips> tip(showTip(textOf(50), QString()));
        QTRY_VERIFY(tip && tip->isActiveWindow());
        other.activateWindow();
        QTRY_VERIFY(tip.isNull());
    }

    // --- The word being read ---------------------------------------------------------

    void theLinesAreTheOnesThePainterDraws_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("one line") << u"Πέτρωμα της Νάξου."_s;
        QTest::newRow("wrapped") << textOf(390);
        QTest::newRow("long words")
            << u"Πέτρωμα της Νάξου, σκληρό, που γυάλιζε τα μάρμαρα· οι τεχνίτες το έτριβαν με νερό "
               "και άμμο ώσπου να λάμψει η επιφάνεια, και έτσι δούλευαν ολόκληρα αγάλματα."_s;
        QTest::newRow("breaks, tabs, ampersands") << u"Α & Β\r\nδεύτερη\tγραμμή\nτρίτη && τέλος"_s;
    }

    void theLinesAreTheOnesThePainterDraws()
    {
        QFETCH(QString, text);
        const auto l = tipgeometry::layOut(QFontMetrics(tipFont()), text, QSize());
        const QSize size(l.text.right() + 30, l.text.bottom() + 30);
        const QImage painted = drawnByPainter(text, l.text, size);
        QCOMPARE(drawnFromLines(text, l.text, size), painted);
    }

    void theWordBeingReadIsPaintedOnItsPlace()
    {
        const QString text = u"Πέτρωμα της Νάξου, σκληρό, που γυάλιζε τα μάρμαρα· οι τεχνίτες το έτριβαν με "
                             "νερό και άμμο ώσπου να λάμψει η επιφάνεια, και έτσι δούλευαν ολόκληρα αγάλματα."_s;
        frmToolTips *tip = showTip(text, QString());
        QVERIFY(QTest::qWaitForWindowExposed(tip));
        const QRect block = tip->layout().text;
        const QImage before = tip->grab().toImage();
        QCOMPARE(tip->highlightedStart(), -1);
        QVERIFY(tip->highlightArea().isEmpty());

        // A word on a later line than the first: the mark follows the wrapping.
        const int start = int(text.indexOf(u"επιφάνεια"_s));
        const int length = 9;
        tip->highlightWord(start, length);
        QCOMPARE(tip->highlightedStart(), start);
        QCOMPARE(tip->highlightedLength(), length);
        const QRegion area = tip->highlightArea();
        QCOMPARE(area.rectCount(), 1);
        const QRect word = area.boundingRect();
        QVERIFY(block.contains(word));
        QVERIFY2(word.top() > block.top() + word.height(), qPrintable(QString::number(word.top())));
        const QImage after = tip->grab().toImage();
        QCOMPARE(after.size(), before.size());
        QCOMPARE(tip->size(), before.size() / before.devicePixelRatio());

        int ink = 0;
        int yellow = 0;
        for (int y = 0; y < after.height(); ++y) {
            for (int x = 0; x < after.width(); ++x) {
                const QRgb was = before.pixel(x, y);
                const QRgb now = after.pixel(x, y);
                if (!word.contains(x, y)) {
                    QCOMPARE(now, was);
                    continue;
                }
                // The letters stay where they were drawn, black on the reading yellow.
                if (isInk(was)) {
                    ++ink;
                    QVERIFY2(isInk(now), qPrintable(u"%1,%2"_s.arg(x).arg(y)));
                }
                if (QColor(now) == speech::readingWordBackground())
                    ++yellow;
            }
        }
        QVERIFY(ink > 20);
        QVERIFY2(yellow > word.width() * word.height() / 2, qPrintable(QString::number(yellow)));

        tip->clearWordHighlight();
        QCOMPARE(tip->highlightedStart(), -1);
        QVERIFY(tip->highlightArea().isEmpty());
        QCOMPARE(tip->grab().toImage(), before);
    }

    void aWordAcrossTheLinesIsMarkedOnEach()
    {
        const QString text = textOf(150);
        frmToolTips *tip = showTip(text, QString());
        // From the middle of the first line to the middle of the second.
        const std::unique_ptr<QTextLayout> lines
            = tipgeometry::textLines(tip->font(), text, tip->layout().text.width());
        QVERIFY(lines->lineCount() >= 2);
        const QTextLine first = lines->lineAt(0);
        const int start = first.textStart() + first.textLength() / 2;
        const int end = lines->lineAt(1).textStart() + 3;
        tip->highlightWord(start, end - start);
        QCOMPARE(tip->highlightArea().rectCount(), 2);
        // A stretch past the end is held to the text; an empty one is no mark.
        tip->highlightWord(int(text.size()) - 2, 10);
        QCOMPARE(tip->highlightedLength(), 2);
        tip->highlightWord(3, 0);
        QCOMPARE(tip->highlightedStart(), -1);
    }

    void theTipIsPlacedOnTheRealScreen()
    {
        const QRect s = screenTwips();
        frmToolTips *tip = showTip(textOf(300), QString(), s.width() - 30, s.height() - 30);
        const auto &l = tip->layout();
        QCOMPARE(tip->pos().x() * 15, s.width() - l.widthTwips);
        QCOMPARE(tip->pos().y() * 15, s.height() - l.heightTwips - 450);
    }
};

QTEST_MAIN(tst_frmToolTips)
#include "tst_frmtooltips.moc"
