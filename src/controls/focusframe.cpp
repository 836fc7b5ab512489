#include "focusframe.h"

#include <QFocusEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>

namespace controls {

bool byKeyboard(Qt::FocusReason reason)
{
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason
        || reason == Qt::ShortcutFocusReason;
}

FocusFrame::FocusFrame(QWidget *target)
    : QWidget(target)
    , m_target(target)
{
    setObjectName(QStringLiteral("focusFrame"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
    target->installEventFilter(this);
    setGeometry(target->rect());
    hide();
}

FocusFrame::~FocusFrame() = default;

bool FocusFrame::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_target) {
        switch (event->type()) {
        case QEvent::FocusIn:
            // Only the keys' focus is shown: a click already says where it went.
            if (byKeyboard(static_cast<QFocusEvent *>(event)->reason())) {
                setGeometry(m_target->rect());
                raise();
                show();
            }
            break;
        case QEvent::FocusOut:
            hide();
            break;
        case QEvent::Resize:
            setGeometry(m_target->rect());
            break;
        default:
            break;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void FocusFrame::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QStyleOptionFocusRect option;
    option.initFrom(m_target);
    option.state |= QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange;
    option.rect = rect().adjusted(1, 1, -1, -1);
    option.backgroundColor = m_target->palette().color(m_target->backgroundRole());
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, m_target);
}

} // namespace controls
