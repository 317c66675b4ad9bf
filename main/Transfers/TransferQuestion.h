#pragma once

#include "Base/Location.h"
#include "Transfers/WhyItStays.h"

#include <QString>
#include <QStringList>
#include <QUuid>

#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

namespace brellin {

/// What to do if the destination's name is taken. `merge` is for two folders only; `later` holds for all conflicts that
/// are open.
enum class ConflictChoice { replace, keepBoth, skip, merge, later };

/// What merging two folders would meet.
struct MergePreview {
    std::int64_t collisions = 0; ///< entries whose name is taken, not counting folders that would be merged as well
    bool complete = true;        ///< false if there may be more

    bool operator==(const MergePreview &) const = default;
};

/// The destination's name is taken. Answered by a `ConflictAnswer`.
struct ConflictQuestion {
    QString name;              ///< of the entry
    std::size_t remaining = 1; ///< number of open conflicts, including this one
    bool existingIsFolder = false;
    /// Why "Ersetzen" is not offered; none if it is.
    std::optional<WhyItStays> stays;
    QString existingLine; ///< e.g. "1,2 MB, 3. September 2026, 14:05"
    QString incomingLine;
    bool incomingIsFolder = false;
    std::optional<MergePreview> merge = {}; ///< set if "Zusammenführen" is offered
    bool mayWait = false;                   ///< "Später fragen" is offered: something else can go first
    std::size_t transferred = 0;            ///< number of entries that have gone already

    bool operator==(const ConflictQuestion &) const = default;
    bool replaceable() const { return !stays; }
};

/// The entry to be replaced cannot be trashed. Answered by a `Confirmation`, valid only for this entry in its present
/// state.
struct NoTrashQuestion {
    QString name;
    bool existingIsFolder = false;
    QString existingLine = {}; ///< as in `ConflictQuestion`

    bool operator==(const NoTrashQuestion &) const = default;
};

/// Obstacles found before copying: names, sizes, free space. Answered by an `ObstacleChoice`.
struct ObstacleQuestion {
    QStringList lines; ///< one per obstacle, at most `shownAtMost`
    std::size_t count = 0;
    static constexpr std::size_t shownAtMost = 12;
    /// The selected entries that "Diese auslassen" skips as a whole.
    QStringList leftOut;
    bool foldersLeftOut = false;
    bool onlyAtTheSource = false; ///< all obstacles are at the source, none at the destination
    std::size_t transferred = 0;  ///< number of entries that have gone already

    bool operator==(const ObstacleQuestion &) const = default;
};

/// A transfer's question, open until answered or until the transfer is cancelled.
struct TransferQuestion {
    QUuid id;
    QUuid transfer;
    std::variant<ConflictQuestion, NoTrashQuestion, ObstacleQuestion> about;

    bool operator==(const TransferQuestion &) const = default;
};

/// Without a choice the transfer is cancelled. Nothing has been done then, unless the question was asked again during
/// the run.
struct ConflictAnswer {
    std::optional<ConflictChoice> choice;
    bool forAll = false; ///< also for all further conflicts
};
enum class Confirmation { Yes, No, Cancel };
enum class ObstacleChoice { TryAnyway, LeaveOut, Cancel };
using TransferAnswer = std::variant<ConflictAnswer, Confirmation, ObstacleChoice>;

/// A question as shown by a sheet: texts and buttons in order, with their answers. The last button is "Abbrechen".
struct QuestionText {
    struct Button {
        QString title;
        TransferAnswer answer;
    };
    QString message;
    QString informative;
    QString hint; ///< explains one of the buttons
    std::vector<Button> buttons;
    QString forAll; ///< title of the check box; empty if there is none
};
QuestionText textOf(const TransferQuestion &question);

} // namespace brellin
