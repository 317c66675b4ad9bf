#pragma once

#include <QString>
#include <QUuid>

#include <array>
#include <vector>

namespace brellin {

/// What a condition looks at. The order is the one in which pickers list the kinds.
enum class ConditionKind { NameContains, ExtensionIs, Category, OlderThanDays, LargerThanMB };
inline constexpr std::array conditionKinds{ConditionKind::NameContains, ConditionKind::ExtensionIs,
                                           ConditionKind::Category, ConditionKind::OlderThanDays,
                                           ConditionKind::LargerThanMB};
/// The text under which a kind is stored; also its identity in lists.
QString rawValue(ConditionKind kind);
/// The label in the rule editor.
QString title(ConditionKind kind);
/// The hint in the empty value field.
QString placeholder(ConditionKind kind);

struct RuleCondition {
    QUuid id = QUuid::createUuid();
    ConditionKind kind = ConditionKind::NameContains;
    QString value; ///< as typed; numbers are parsed when matching

    bool operator==(const RuleCondition &) const = default;
};

/// What a rule does with a file. The order is the one of the editor's picker.
enum class RuleAction { Move, Copy, Rename, Trash, AiSort };
inline constexpr std::array ruleActions{RuleAction::Move, RuleAction::Copy, RuleAction::Rename, RuleAction::Trash,
                                        RuleAction::AiSort};
QString rawValue(RuleAction action);
QString title(RuleAction action);

/// One line of the user's order: which files of a folder, and what to do with them. Rules are tried top to bottom, the
/// first that matches takes the file.
struct CleanupRule {
    QUuid id = QUuid::createUuid();
    bool enabled = true;
    QString name = QStringLiteral("Neue Regel");
    QString sourcePath; ///< absolute path of the folder the rule looks into
    bool includeSubfolders = false;
    std::vector<RuleCondition> conditions; ///< all must hold; none: every file of the folder
    RuleAction action = RuleAction::Move;
    QString targetPath; ///< destination folder with placeholders; empty for the Trash
    QString renamePattern = QStringLiteral("{Datum} {Name}");
    bool automatic = false; ///< carried out without asking

    bool operator==(const CleanupRule &) const = default;
};

} // namespace brellin
