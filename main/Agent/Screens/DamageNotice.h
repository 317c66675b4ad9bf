#pragma once

#include "Agent/CleanupAgent.h"

#include <QWidget>

class QVBoxLayout;

namespace brellin {

class TextLabel;

/// Whether nothing tells what one of the agent's lists holds: then it is neither shown nor said to be empty.
bool isDamaged(const CleanupAgent &agent, const QString &list);

/// Names the stored lists that cannot be read whole, and lets the user decide for each: the last good version, or a new
/// beginning. Hidden while there are none.
class DamageNotice : public QWidget {
    Q_OBJECT
public:
    DamageNotice(CleanupAgent &agent, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void showDamage();
    QWidget *rowOf(const StoredCondition &list);
    void askToBeginAnew(const StoredCondition &list);
    void tell(const Result<void> &done);

    CleanupAgent &m_agent;
    QVBoxLayout *m_column;
    QWidget *m_rows = nullptr;
    TextLabel *m_problem;
};

} // namespace brellin
