#pragma once

#include "Agent/Rules/CleanupRule.h"

#include <QWidget>

class QComboBox;
class QLineEdit;

namespace brellin {

/// One condition of the rule being edited: its kind, its value, and a button that takes it away.
class ConditionRow : public QWidget {
    Q_OBJECT
public:
    ConditionRow(const RuleCondition &condition, QWidget *parent);

    RuleCondition condition() const;
    void focusValue();

    Q_SIGNAL void changed();
    Q_SIGNAL void removeRequested();

private:
    void showPlaceholder();

    QUuid m_id;
    QComboBox *m_kind;
    QLineEdit *m_value;
};

} // namespace brellin
