#pragma once

#include "Agent/CleanupAgent.h"

#include <QWidget>

class QVBoxLayout;

namespace brellin {

class TextLabel;

/// Whether one of the agent's lists is unreadable: it must then neither be shown nor called empty.
bool isDamaged(const CleanupAgent &agent, const QString &list);

/// Names the stored lists that cannot be read completely, and offers for each to restore the last good version or to
/// reset it. Hidden if there are none.
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
