#pragma once

// What the dark-desktop tests look for in a window: every text keeps a contrast of 4.5:1
// against what it stands on, and the window looks as it does under a light desktop.

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QHash>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QTabBar>
#include <QTextBlock>
#include <QTextEdit>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace testing {

inline double luminance(QColor c)
{
    auto channel = [](double v) {
        v /= 255.0;
        return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(c.red()) + 0.7152 * channel(c.green()) + 0.0722 * channel(c.blue());
}

inline double contrast(QColor a, QColor b)
{
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

// What a control stands on: the colour painted most in its place on the window.
inline QColor groundOf(const QImage &shot, const QRect &where)
{
    QHash<QRgb, int> counts;
    const QRect r = where.intersected(shot.rect());
    for (int y = r.top(); y <= r.bottom(); ++y) {
        for (int x = r.left(); x <= r.right(); ++x)
            ++counts[shot.pixel(x, y) & 0xF0F0F0];
    }
    QRgb best = 0;
    int most = -1;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it) {
        if (it.value() > most) {
            most = it.value();
            best = it.key();
        }
    }
    // The middle of the bucket.
    return QColor(qRed(best) | 8, qGreen(best) | 8, qBlue(best) | 8);
}

struct LowContrast
{
    QString what;
    double ratio;
};

// The texts of a window (or of one child window of the shell) whose colours come from
// its palette, each with its foreground and the colour it stands on: a box's own
// background where it paints one, else what the window shows in the control's place.
inline QList<LowContrast> lowContrasts(QWidget *scope)
{
    using namespace Qt::StringLiterals;
    QList<LowContrast> found;
    const QImage shot = scope->grab().toImage();
    auto check = [&](QWidget *w, QColor ink, const QString &what) {
        QColor ground;
        if (w->autoFillBackground())
            ground = w->palette().color(w->backgroundRole());
        else
            ground = groundOf(shot, QRect(w->mapTo(scope, QPoint(0, 0)), w->size()));
        const double ratio = contrast(ink, ground);
        if (ratio < 4.5)
            found.append({what, ratio});
    };
    const QList<QWidget *> all = scope->findChildren<QWidget *>();
    for (QWidget *w : all) {
        if (!w->isVisibleTo(scope) || w->window() != scope->window() || w->width() < 4 || w->height() < 4)
            continue;
        const QString name
            = u"%1 %2"_s.arg(QString::fromLatin1(w->metaObject()->className()), w->objectName());
        if (auto *label = qobject_cast<QLabel *>(w)) {
            if (!label->text().isEmpty())
                check(label, label->palette().color(label->foregroundRole()),
                    name + u" «"_s + label->text() + u"»"_s);
        } else if (auto *button = qobject_cast<QAbstractButton *>(w)) {
            if (!button->text().isEmpty() && button->isEnabled())
                check(button, button->palette().color(button->foregroundRole()), name);
        } else if (auto *edit = qobject_cast<QTextEdit *>(w)) {
            if (edit->document()->isEmpty())
                continue;
            // Runs without a colour of their own take the box's text colour.
            bool plainRun = false;
            for (QTextBlock block = edit->document()->begin(); block.isValid() && !plainRun;
                 block = block.next()) {
                for (auto it = block.begin(); !it.atEnd(); ++it) {
                    if (!it.fragment().charFormat().hasProperty(QTextFormat::ForegroundBrush)
                        && !it.fragment().text().trimmed().isEmpty()) {
                        plainRun = true;
                        break;
                    }
                }
            }
            if (plainRun)
                check(edit->viewport(), edit->palette().color(QPalette::Text), name);
        } else if (auto *view = qobject_cast<QAbstractItemView *>(w)) {
            if (view->model() && view->model()->rowCount() > 0)
                check(view->viewport(), view->palette().color(QPalette::Text), name);
        } else if (auto *line = qobject_cast<QLineEdit *>(w)) {
            if (!line->text().isEmpty())
                check(line, line->palette().color(QPalette::Text), name);
        } else if (auto *tabs = qobject_cast<QTabBar *>(w)) {
            if (tabs->count() > 0)
                check(tabs, tabs->palette().color(QPalette::WindowText), name);
        } else if (auto *menu = qobject_cast<QMenuBar *>(w)) {
            check(menu, menu->palette().color(QPalette::ButtonText), name);
        }
    }
    return found;
}

inline QString describe(const QList<LowContrast> &found)
{
    QStringList lines;
    for (const LowContrast &f : found)
        lines << QStringLiteral("%1: %2:1").arg(f.what).arg(f.ratio, 0, 'f', 2);
    return lines.join(QStringLiteral("; "));
}

// How many pixels differ between two pictures of a window (all of them when the sizes
// differ).
inline qint64 differingPixels(const QImage &a, const QImage &b)
{
    if (a.size() != b.size())
        return qint64(std::max(a.width(), b.width())) * std::max(a.height(), b.height());
    const QImage x = a.convertToFormat(QImage::Format_RGB32);
    const QImage y = b.convertToFormat(QImage::Format_RGB32);
    qint64 changed = 0;
    for (int row = 0; row < x.height(); ++row) {
        const auto *p = reinterpret_cast<const QRgb *>(x.constScanLine(row));
        const auto *q = reinterpret_cast<const QRgb *>(y.constScanLine(row));
        for (int col = 0; col < x.width(); ++col)
            changed += p[col] != q[col];
    }
    return changed;
}

// A window may differ in this share of its pixels and still look as it did: a caret's
// blink, a focus frame.
constexpr double ChangedShareAllowed = 0.002;

} // namespace testing
