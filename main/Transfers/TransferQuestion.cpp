#include "Transfers/TransferQuestion.h"

#include "Base/German.h"

namespace brellin {

namespace {

QuestionText::Button cancelButton(const TransferAnswer &answer)
{
    return {QStringLiteral("Abbrechen"), answer};
}

/// „„Zusammenführen“ legt den Inhalt dazu. 3 Einträge darin gibt es dort schon; nach ihnen wird einzeln gefragt.“
QString mergeHint(const MergePreview &merge)
{
    const QString start = QStringLiteral("„Zusammenführen“ legt den Inhalt zum vorhandenen Ordner. ");
    if (merge.collisions == 0)
        return start + (merge.complete ? QStringLiteral("Nichts davon gibt es dort schon.")
                                       : QStringLiteral("Nach dem, was es dort schon gibt, wird einzeln gefragt."));
    const QString least = merge.complete ? QString() : QStringLiteral("Mindestens ");
    return start + least +
           (merge.collisions == 1
                ? (merge.complete ? QStringLiteral("Ein Eintrag darin ist dort schon vorhanden; nach ihm wird gefragt.")
                                  : QStringLiteral("ein Eintrag darin ist dort schon vorhanden; danach wird gefragt."))
                : QStringLiteral("%1 Einträge darin sind dort schon vorhanden; nach ihnen wird einzeln gefragt.")
                      .arg(german().toString(qlonglong(merge.collisions))));
}

/// Explains what goes beyond the plain answers.
QString hintOf(const ConflictQuestion &question)
{
    QStringList lines;
    if (question.merge)
        lines << mergeHint(*question.merge);
    if (question.mayWait)
        lines << QStringLiteral("„Später fragen“ überträgt zuerst alles, was im Ziel noch nicht vorhanden ist.");
    if (question.transferred > 0)
        lines << QStringLiteral("„Abbrechen“ lässt nur aus, was noch offen ist: %1 übertragen.")
                     .arg(question.transferred == 1 ? QStringLiteral("1 Element ist schon")
                                                    : QStringLiteral("%1 Elemente sind schon")
                                                          .arg(german().toString(qulonglong(question.transferred))));
    return lines.join(u'\n');
}

QuestionText textOf(const ConflictQuestion &question)
{
    QuestionText text;
    text.hint = hintOf(question);
    text.message = QStringLiteral("„%1“ ist im Ziel schon vorhanden").arg(question.name);
    text.informative =
        QStringLiteral("Im Ziel: ") + question.existingLine + QStringLiteral("\nNeu: ") + question.incomingLine;
    if (question.stays) {
        text.informative += QStringLiteral("\n\n") + sentenceOf(*question.stays);
    } else {
        text.informative += QStringLiteral("\n\n„Ersetzen“ legt %1 in den Papierkorb.")
                                .arg(question.existingIsFolder ? QStringLiteral("den vorhandenen Ordner")
                                                               : QStringLiteral("die vorhandene Datei"));
        text.buttons.push_back({QStringLiteral("Ersetzen"), ConflictAnswer{ConflictChoice::replace}});
    }
    text.buttons.push_back({QStringLiteral("Beide behalten"), ConflictAnswer{ConflictChoice::keepBoth}});
    text.buttons.push_back({QStringLiteral("Überspringen"), ConflictAnswer{ConflictChoice::skip}});
    if (question.merge)
        text.buttons.push_back({QStringLiteral("Zusammenführen"), ConflictAnswer{ConflictChoice::merge}});
    if (question.mayWait)
        text.buttons.push_back({QStringLiteral("Später fragen"), ConflictAnswer{ConflictChoice::later}});
    text.buttons.push_back(cancelButton(ConflictAnswer{}));
    if (question.remaining >= 2)
        text.forAll = QStringLiteral("Für alle %1 Konflikte übernehmen").arg(question.remaining);
    return text;
}

QuestionText textOf(const NoTrashQuestion &question)
{
    QuestionText text;
    text.message = QStringLiteral("„%1“ endgültig ersetzen?").arg(question.name);
    if (!question.existingLine.isEmpty())
        text.informative = QStringLiteral("Im Ziel: ") + question.existingLine + QStringLiteral("\n\n");
    text.informative +=
        QStringLiteral("Am Ziel gibt es keinen Papierkorb. %1 wird beim Ersetzen endgültig gelöscht und "
                       "lässt sich nicht zurückholen.")
            .arg(question.existingIsFolder ? QStringLiteral("Der vorhandene Ordner")
                                           : QStringLiteral("Die vorhandene Datei"));
    text.buttons = {{QStringLiteral("Endgültig ersetzen"), Confirmation::Yes},
                    {QStringLiteral("Überspringen"), Confirmation::No},
                    cancelButton(Confirmation::Cancel)};
    return text;
}

/// „„Diese auslassen“ überträgt nicht: „Fotos“, „Film.mkv“. Ein Ordner bleibt mit allem darin zurück.“
QString leftOutHint(const ObstacleQuestion &question)
{
    constexpr qsizetype named = 3;
    QStringList names;
    for (const QString &name : question.leftOut.mid(0, named))
        names << QStringLiteral("„%1“").arg(name);
    QString text = QStringLiteral("„Diese auslassen“ überträgt nicht: ") + names.join(QStringLiteral(", "));
    if (question.leftOut.size() > named)
        text += QStringLiteral(" und %1 weitere").arg(question.leftOut.size() - named);
    text += u'.';
    if (question.foldersLeftOut)
        text += QStringLiteral(" Ein Ordner bleibt mit allem darin zurück.");
    return text;
}

QuestionText textOf(const ObstacleQuestion &question)
{
    QuestionText text;
    text.message = question.onlyAtTheSource ? QStringLiteral("Nicht alles lässt sich vom alten Ort entfernen")
                                            : QStringLiteral("Nicht alles passt an dieses Ziel");
    text.informative = question.lines.join(u'\n');
    if (question.count > static_cast<std::size_t>(question.lines.size()))
        text.informative +=
            QStringLiteral("\n… und %1 weitere").arg(question.count - static_cast<std::size_t>(question.lines.size()));
    text.hint = leftOutHint(question);
    text.buttons = {{QStringLiteral("Trotzdem versuchen"), ObstacleChoice::TryAnyway},
                    {QStringLiteral("Diese auslassen"), ObstacleChoice::LeaveOut},
                    cancelButton(ObstacleChoice::Cancel)};
    return text;
}

} // namespace

QuestionText textOf(const TransferQuestion &question)
{
    return std::visit([](const auto &about) { return textOf(about); }, question.about);
}

} // namespace brellin
