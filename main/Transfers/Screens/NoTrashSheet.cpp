#include "Transfers/Screens/NoTrashSheet.h"

#include "Look/Labels.h"

#include <QVBoxLayout>

namespace brellin {

namespace {

constexpr QSize wanted(500, 0);

} // namespace

NoTrashSheet::NoTrashSheet(const TransferQuestion &question, QWidget *window)
    // "Überspringen" loses nothing, so it is the default.
    : QuestionSheet(textOf(fittingHead(question, wanted.width(), window)), {1, 0}, wanted, window)
{
    setObjectName(QStringLiteral("noTrashSheet"));
    setAccessibleName(textOf(question).message);
    setAccessibleDescription(text().informative);
    setToolTip(std::get<NoTrashQuestion>(question.about).name);
    TextLabel *const what = makeBody(text().informative, this);
    what->setObjectName(QStringLiteral("consequence"));
    content()->addWidget(what);
}

} // namespace brellin
