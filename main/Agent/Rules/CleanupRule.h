#pragma once

#include <QString>
#include <QUuid>

#include <array>
#include <vector>

namespace brellin {

/// What a condition tests. Pickers list the kinds in this order.
enum class ConditionKind { NameContains, ExtensionIs, Category, OlderThanDays, LargerThanMB };
inline constexpr std::array conditionKinds{ConditionKind::NameContains, ConditionKind::ExtensionIs,
                                           ConditionKind::Category, ConditionKind::OlderThanDays,
                                           ConditionKind::LargerThanMB};
/// The word under which a kind is stored; also identifies it in lists.
QString rawValue(ConditionKind kind);
/// The label in the rule editor.
QString title(ConditionKind kind);
/// The placeholder text of the empty value field.
QString placeholder(ConditionKind kind);

struct RuleCondition {
    QUuid id = QUuid::createUuid();
    ConditionKind kind = ConditionKind::NameContains;
    QString value; ///< as typed; numbers are parsed when matching

    bool operator==(const RuleCondition &) const = default;
};

/// What a rule does with a file. The editor's picker lists the actions in this order.
enum class RuleAction { Move, Copy, Rename, Trash, AiSort };
inline constexpr std::array ruleActions{RuleAction::Move, RuleAction::Copy, RuleAction::Rename, RuleAction::Trash,
                                        RuleAction::AiSort};
QString rawValue(RuleAction action);
QString title(RuleAction action);

/// A cleanup rule: which files of a folder it takes, and what happens to them. Rules are tried top to bottom; the first
/// that matches takes the file.
struct CleanupRule {
    QUuid id = QUuid::createUuid();
    bool enabled = true;
    QString name = QStringLiteral("Neue Regel");
    QString sourcePath; ///< absolute path of the folder it applies to
    bool includeSubfolders = false;
    std::vector<RuleCondition> conditions; ///< all must hold; if empty, matches every file of the folder
    RuleAction action = RuleAction::Move;
    QString targetPath; ///< destination folder with placeholders; unused by Trash
    QString renamePattern = QStringLiteral("{Datum} {Name}");
    bool automatic = false; ///< executed without asking

    bool operator==(const CleanupRule &) const = default;
};

} // namespace brellin
