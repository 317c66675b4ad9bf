#pragma once

#include "Agent/Rules/CleanupRule.h"

#include <QWidget>

class QComboBox;
class QLineEdit;

namespace brellin {

/// One condition in the rule editor: its kind, its value and a remove button.
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
