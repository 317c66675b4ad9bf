#pragma once

#include "Agent/Screens/AgentPorts.h"
#include "Look/SheetFrame.h"

#include <functional>

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace brellin {

class ConditionRow;
class FolderField;
class NoticeBar;
class RuleTrialPane;
class TextLabel;

/// Edits a copy of a rule, with a live preview beside the fields. `done` gets the copy when the user saves; it may
/// refuse with the reason to show. Asks before discarding changes.
class RuleEditor : public SheetFrame {
    Q_OBJECT
public:
    using Done = std::function<Result<void>(const CleanupRule &)>;
    RuleEditor(const AgentPorts &ports, const CleanupRule &rule, Done done, QWidget *window);

    /// The copy in its present state.
    CleanupRule edited() const;

protected:
    void escape() override;

private:
    void buildSource();
    void buildConditions();
    void buildAction();
    void buildButtons();
    void addCondition(const RuleCondition &condition);
    void showAction();
    void changed();
    void save();

    AgentPorts m_ports;
    CleanupRule m_rule;
    CleanupRule m_opened; ///< the unedited state, as read back from the fields
    Done m_done;
    NoticeBar *m_problem;
    QLineEdit *m_name = nullptr;
    FolderField *m_source = nullptr;
    QCheckBox *m_subfolders = nullptr;
    QVBoxLayout *m_conditionRows = nullptr;
    std::vector<ConditionRow *> m_conditions;
    TextLabel *m_noCondition = nullptr;
    QComboBox *m_action = nullptr;
    FolderField *m_target = nullptr;
    QLineEdit *m_pattern = nullptr;
    TextLabel *m_hint = nullptr;
    QCheckBox *m_automatic = nullptr;
    RuleTrialPane *m_trial = nullptr;
};

} // namespace brellin
