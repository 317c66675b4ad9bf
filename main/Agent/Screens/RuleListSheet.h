#pragma once

#include "Agent/Screens/AgentPorts.h"
#include "Agent/Screens/RuleListModel.h"
#include "Look/SheetFrame.h"

class QListView;
class QPushButton;

namespace brellin {

class NoticeBar;

/// The list of rules, in order of precedence: enable, move, copy, delete and restore.
class RuleListSheet : public SheetFrame {
    Q_OBJECT
public:
    RuleListSheet(const AgentPorts &ports, QWidget *window);

    void select(const QUuid &rule);

    Q_SIGNAL void editRequested(const brellin::CleanupRule &rule);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildList();
    void buildActions();
    void buildButtons();
    QPushButton *action(const QString &title, const QString &symbol, const QString &objectName);
    bool takesKey(QKeyEvent *event);
    void refresh();
    const CleanupRule *current() const;
    void edit();
    void move(int by);
    void duplicate();
    void remove();
    void restore();
    void tell(const Failure &why);

    AgentPorts m_ports;
    RuleListModel m_model;
    QListView *m_list = nullptr;
    NoticeBar *m_notice = nullptr;
    std::optional<RemovedRule> m_removed;
    QUuid m_current; ///< kept across updates of the list
    QPushButton *m_edit = nullptr;
    QPushButton *m_duplicate = nullptr;
    QPushButton *m_remove = nullptr;
    QPushButton *m_up = nullptr;
    QPushButton *m_down = nullptr;
    QPushButton *m_examples = nullptr;
    QPushButton *m_new = nullptr;
};

} // namespace brellin
