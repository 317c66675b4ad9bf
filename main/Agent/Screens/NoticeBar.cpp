#include "Agent/Screens/NoticeBar.h"

#include "Look/Buttons.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QHBoxLayout>
#include <QPainter>

namespace brellin {

NoticeBar::NoticeBar(const QString &button, const QString &objectName, QWidget *parent)
    : QWidget(parent)
    , m_text(makeBody({}, this))
{
    setObjectName(objectName);
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(scaled(14), scaled(6), scaled(8), scaled(6));
    row->addWidget(m_text, 1);
    if (!button.isEmpty()) {
        QPushButton *const action = makeButton(button, ButtonKind::Link, objectName + QStringLiteral("Action"), this);
        connect(action, &QPushButton::clicked, this, &NoticeBar::clicked);
        row->addWidget(action);
    }
    hide();
}

void NoticeBar::tell(const QString &text, Token ink, Token ground)
{
    m_text->setText(text);
    m_text->setToken(ink);
    m_ground = ground;
    setAccessibleName(text);
    setVisible(!text.isEmpty());
    update();
}

void NoticeBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color(m_ground));
    painter.drawRoundedRect(rect(), 8, 8);
}

} // namespace brellin
