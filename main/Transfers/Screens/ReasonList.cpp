#include "Transfers/Screens/ReasonList.h"

#include "Look/Cards.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QPainter>
#include <QVBoxLayout>

namespace brellin {

namespace {

/// Keeps unbreakable text from widening its surroundings.
void narrow(QLabel *label)
{
    label->setMinimumWidth(1);
    label->setToolTip(label->text());
}

} // namespace

ReasonList::ReasonList(const QStringList &lines, QWidget *parent) : QWidget(parent)
{
    setAccessibleName(lines.join(u'\n'));
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(scaled(12), scaled(10), scaled(12), scaled(10));
    column->setSpacing(scaled(8));
    for (const QString &line : lines) {
        const QString colon = QStringLiteral(": ");
        const QString reason = line.section(colon, 1);
        auto *const pair = new QVBoxLayout;
        pair->setSpacing(scaled(1));
        pair->addWidget(new ElidedLabel(line.section(colon, 0, 0), Token::Text, 1, this));
        if (!reason.isEmpty()) {
            TextLabel *const why = makeSecondary(reason, this);
            narrow(why);
            pair->addWidget(why);
        }
        column->addLayout(pair);
    }
}

void ReasonList::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paintBox(painter, rect(), Token::Window);
}

} // namespace brellin
