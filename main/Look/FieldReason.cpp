#include "Look/FieldReason.h"

#include "Look/Buttons.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QStyle>

#include <algorithm>

namespace brellin {

FieldReason::FieldReason(QLineEdit *field)
    : QWidget(field->window())
    , m_field(field)
    , m_text(makeBody({}, this))
    , m_action(makeButton({}, ButtonKind::Link, QStringLiteral("fieldReasonAction"), this))
{
    setObjectName(QStringLiteral("fieldReason"));
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(scaled(10), scaled(6), scaled(10), scaled(6));
    row->setSpacing(scaled(10));
    m_text->setObjectName(QStringLiteral("fieldReasonText"));
    m_text->setToken(Token::Danger);
    row->addWidget(m_text, 1);
    // A click leaves the focus in the field, which closes when it loses the focus.
    m_action->setFocusPolicy(Qt::TabFocus);
    row->addWidget(m_action);
    hide();
    field->installEventFilter(this);
    connect(field, &QLineEdit::textEdited, this, &FieldReason::clear);
    connect(field, &QObject::destroyed, this, &QObject::deleteLater);
    connect(m_action, &QAbstractButton::clicked, this, &FieldReason::actionClicked);
}

void FieldReason::show(const QString &reason, const QString &action)
{
    m_text->setText(reason);
    m_action->setText(action);
    m_action->setAccessibleName(action);
    m_action->setVisible(!action.isEmpty());
    mark(reason);
    place();
    QWidget::show();
    raise();
}

void FieldReason::clear()
{
    mark({});
    hide();
}

void FieldReason::mark(const QString &reason)
{
    m_field->setAccessibleDescription(reason);
    m_field->setProperty("refused", !reason.isEmpty());
    m_field->style()->unpolish(m_field);
    m_field->style()->polish(m_field);
}

/// Below the field or, if there is no room, above it, within the window.
void FieldReason::place()
{
    constexpr int widest = 420;
    const QRect room = parentWidget()->rect();
    const QRect field(m_field->mapTo(parentWidget(), QPoint(0, 0)), m_field->size());
    m_text->setWordWrap(false);
    const int wanted = sizeHint().width();
    m_text->setWordWrap(wanted > scaled(widest));
    const int width = std::min({wanted, scaled(widest), room.width()});
    const int height = hasHeightForWidth() ? heightForWidth(width) : sizeHint().height();
    const int gap = scaled(4);
    const int below = field.bottom() + gap;
    const int left = std::clamp(field.left(), 0, room.width() - width);
    setGeometry(left, below + height <= room.height() ? below : field.top() - gap - height, width, height);
}

bool FieldReason::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Hide)
        hide();
    else if (isVisible() && (event->type() == QEvent::Move || event->type() == QEvent::Resize))
        place();
    return QWidget::eventFilter(watched, event);
}

void FieldReason::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), color(Token::Card));
    painter.setPen(color(Token::Danger));
    painter.setBrush(color(Token::DangerSoft));
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
}

} // namespace brellin
