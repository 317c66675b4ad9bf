#include "Transfers/Screens/ObstacleSheet.h"

#include "Look/Labels.h"
#include "Look/Theme.h"
#include "Transfers/Screens/ReasonList.h"

#include <QVBoxLayout>

namespace brellin {

ObstacleSheet::ObstacleSheet(const TransferQuestion &question, QWidget *window)
    : QuestionSheet(textOf(question), {1}, {580, 0}, window)
{
    setObjectName(QStringLiteral("obstacleSheet"));
    setAccessibleDescription(text().informative + u'\n' + text().hint);
    const bool begun = std::get<ObstacleQuestion>(question.about).transferred > 0;
    const QString sofar =
        begun ? QStringLiteral("Was schon übertragen ist, bleibt. ") : QStringLiteral("Noch ist nichts übertragen. ");
    TextLabel *const hint = makeBody(sofar + text().hint, this);
    hint->setObjectName(QStringLiteral("obstacleHint"));
    hint->setMinimumWidth(1); // an unbreakable name must not widen the sheet
    content()->addWidget(hint);
    content()->addSpacing(scaled(4));
    auto *const list = new ReasonList(text().informative.split(u'\n'), this);
    list->setObjectName(QStringLiteral("obstacles"));
    content()->addWidget(list);
}

} // namespace brellin
