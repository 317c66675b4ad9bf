#include "Transfers/Screens/ObstacleSheet.h"

#include "Look/Labels.h"
#include "Look/Theme.h"
#include "Transfers/Screens/ReasonList.h"

#include <QVBoxLayout>

#include <algorithm>

namespace brellin {

namespace {

QSize sizeFor(const ObstacleQuestion &question)
{
    const auto lines = std::min<qsizetype>(question.lines.size(), 5);
    return {580, 272 + 42 * static_cast<int>(lines)};
}

} // namespace

ObstacleSheet::ObstacleSheet(const TransferQuestion &question, QWidget *window)
    : QuestionSheet(textOf(question), {1}, sizeFor(std::get<ObstacleQuestion>(question.about)), window)
{
    setObjectName(QStringLiteral("obstacleSheet"));
    setAccessibleDescription(text().informative + u'\n' + text().hint);
    TextLabel *const hint = makeBody(QStringLiteral("Noch ist nichts übertragen. ") + text().hint, this);
    hint->setObjectName(QStringLiteral("obstacleHint"));
    hint->setMinimumWidth(1); // a name that cannot be broken may not widen the sheet
    content()->addWidget(hint);
    content()->addSpacing(scaled(4));
    auto *const list = new ReasonList(text().informative.split(u'\n'), this);
    list->setObjectName(QStringLiteral("obstacles"));
    content()->addWidget(list);
    content()->addStretch(1);
}

} // namespace brellin
