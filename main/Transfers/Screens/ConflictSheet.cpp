#include "Transfers/Screens/ConflictSheet.h"

#include "Look/Labels.h"
#include "Look/Theme.h"
#include "Transfers/Screens/EntryTile.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace brellin {

namespace {

constexpr int sheetWidth = 660;

/// What "Ersetzen" would do, or why it is not offered.
QString consequence(const QString &informative)
{
    return informative.section(QStringLiteral("\n\n"), 1);
}

} // namespace

ConflictSheet::ConflictSheet(const TransferQuestion &question, QWidget *window)
    : ConflictSheet(std::get<ConflictQuestion>(question.about), question, window)
{
}

ConflictSheet::ConflictSheet(const ConflictQuestion &conflict, const TransferQuestion &question, QWidget *window)
    // "Beide behalten", whether or not "Ersetzen" precedes it.
    : QuestionSheet(textOf(fittingHead(question, sheetWidth, window)), Roles{conflict.replaceable() ? 1 : 0},
                    {sheetWidth, 0}, window)
{
    setObjectName(QStringLiteral("conflictSheet"));
    setAccessibleName(textOf(question).message);
    setAccessibleDescription(text().hint.isEmpty() ? text().informative : text().informative + u'\n' + text().hint);
    auto *const pair = new QHBoxLayout;
    pair->setSpacing(scaled(12));
    auto *const existing = new EntryTile(
        QStringLiteral("Im Ziel:"), conflict.existingLine,
        {conflict.name, conflict.existingIsFolder ? EntryTile::Shape::Folder : EntryTile::Shape::File}, this);
    existing->setObjectName(QStringLiteral("existingEntry"));
    auto *const incoming = new EntryTile(
        QStringLiteral("Neu:"), conflict.incomingLine,
        {conflict.name, conflict.incomingIsFolder ? EntryTile::Shape::Folder : EntryTile::Shape::File}, this);
    incoming->setObjectName(QStringLiteral("incomingEntry"));
    pair->addWidget(existing, 1);
    pair->addWidget(incoming, 1);
    content()->addLayout(pair);
    content()->addSpacing(scaled(4));
    TextLabel *const what = makeBody(consequence(text().informative), this);
    what->setObjectName(QStringLiteral("consequence"));
    content()->addWidget(what);
    if (!text().hint.isEmpty()) {
        TextLabel *const hint = makeSecondary(text().hint, this);
        hint->setObjectName(QStringLiteral("conflictHint"));
        content()->addWidget(hint);
    }
    addForAll();
}

} // namespace brellin
