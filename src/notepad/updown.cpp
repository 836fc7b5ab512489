#include "updown.h"

#include <runtimeerror.h>

#include <QLineEdit>
#include <QLocale>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {

constexpr int TypeMismatch = 13;

} // namespace

UpDown::UpDown(QWidget *parent)
    : QWidget(parent)
    , upButton(new QToolButton(this))
    , downButton(new QToolButton(this))
{
    upButton->setArrowType(Qt::UpArrow);
    downButton->setArrowType(Qt::DownArrow);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (QToolButton *key : {upButton, downButton}) {
        key->setFocusPolicy(Qt::NoFocus);
        key->setAutoRepeat(true);
        key->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        layout->addWidget(key);
    }
    connect(upButton, &QToolButton::clicked, this, [this] {
        setValue(m_value + Increment);
        emit UpClick();
    });
    connect(downButton, &QToolButton::clicked, this, [this] {
        setValue(m_value - Increment);
        emit DownClick();
    });
}

void UpDown::setValue(int value)
{
    value = std::clamp(value, Min, Max);
    if (value == m_value)
        return;
    m_value = value;
    emit Change();
}

int ParseMillimetres(QLineEdit &text, UpDown &spinner)
{
    QString number = text.text();
    const qsizetype unit = number.indexOf(QStringLiteral(" mm"));
    if (unit >= 0)
        number = number.left(unit);
    number = number.trimmed();
    bool ok = false;
    double value = QLocale::c().toDouble(number, &ok);
    if (!ok)
        value = QLocale(QLocale::Greek).toDouble(number, &ok);
    if (!ok || !std::isfinite(value) || std::abs(value) > 2147483647.0)
        throw platform::RuntimeError(TypeMismatch, QStringLiteral("Ασυμβατότητα τύπων"));
    spinner.setValue(int(std::nearbyint(value)));
    return spinner.Value();
}

void bindSpinner(UpDown &spinner, QLineEdit &text)
{
    text.setProperty("Tag", QStringLiteral("mm"));
    const auto write = [&spinner, &text] {
        text.setText(QString::number(spinner.Value()) + u' ' + text.property("Tag").toString());
    };
    QObject::connect(&spinner, &UpDown::Change, &text, write);
    QObject::connect(&spinner, &UpDown::UpClick, &text, write);
    QObject::connect(&spinner, &UpDown::DownClick, &text, write);
}
