#pragma once

#include "Base/Location.h"
#include "Transfers/WhyItStays.h"

#include <QString>
#include <QStringList>
#include <QUuid>

#include <optional>
#include <variant>
#include <vector>

namespace brellin {

/// What to do with an entry whose name is taken in the destination.
enum class ConflictChoice { replace, keepBoth, skip };

/// A name is taken. Answered by a `ConflictAnswer`.
struct ConflictQuestion {
    QString name;              ///< the entry's
    std::size_t remaining = 1; ///< conflicts still to decide, this one included
    bool existingIsFolder = false;
    /// Why "Ersetzen" is not offered; nothing where it is.
    std::optional<WhyItStays> stays;
    QString existingLine; ///< "1,2 MB, 3. September 2026, 14:05"
    QString incomingLine;
    bool incomingIsFolder = false;

    bool operator==(const ConflictQuestion &) const = default;
    bool replaceable() const { return !stays; }
};

/// The entry that is to be replaced has no Trash to go to. Answered by a `Confirmation`, which holds for this entry alone and
/// as it is now.
struct NoTrashQuestion {
    QString name;
    bool existingIsFolder = false;
    QString existingLine = {}; ///< as of a `ConflictQuestion`

    bool operator==(const NoTrashQuestion &) const = default;
};

/// What speaks against a transfer before its first byte: names, sizes, free space. Answered by an `ObstacleChoice`.
struct ObstacleQuestion {
    QStringList lines; ///< one for each obstacle, at most `shownAtMost`
    std::size_t count = 0;
    static constexpr std::size_t shownAtMost = 12;
    /// The selected entries that "Diese auslassen" leaves out, each as a whole.
    QStringList leftOut;
    bool foldersLeftOut = false;
    bool onlyAtTheSource = false; ///< the destination could take everything

    bool operator==(const ObstacleQuestion &) const = default;
};

/// A question of a transfer, open until it is answered or the transfer cancelled.
struct TransferQuestion {
    QUuid id;
    QUuid transfer;
    std::variant<ConflictQuestion, NoTrashQuestion, ObstacleQuestion> about;

    bool operator==(const TransferQuestion &) const = default;
};

/// Nothing chosen: the whole transfer is cancelled, with nothing done.
struct ConflictAnswer {
    std::optional<ConflictChoice> choice;
    bool forAll = false; ///< also for every further conflict
};
enum class Confirmation { Yes, No, Cancel };
enum class ObstacleChoice { TryAnyway, LeaveOut, Cancel };
using TransferAnswer = std::variant<ConflictAnswer, Confirmation, ObstacleChoice>;

/// A question as a sheet shows it: its text, its buttons in order and what each answers. The last button is "Abbrechen".
struct QuestionText {
    struct Button {
        QString title;
        TransferAnswer answer;
    };
    QString message;
    QString informative;
    QString hint; ///< what one of the buttons does
    std::vector<Button> buttons;
    QString forAll; ///< the title of the check box; empty where there is none
};
QuestionText textOf(const TransferQuestion &question);

} // namespace brellin
