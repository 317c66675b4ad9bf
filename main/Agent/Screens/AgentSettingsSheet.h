#pragma once

#include "Agent/Screens/AgentPorts.h"
#include "Look/SheetFrame.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;

namespace brellin {

class NoticeBar;
class TextLabel;

/// The agent's settings: schedule, folders searched for duplicates, language model, and the never-propose list.
class AgentSettingsSheet : public SheetFrame {
    Q_OBJECT
public:
    AgentSettingsSheet(const AgentPorts &ports, QWidget *window);

private:
    void addHead(const QString &title);
    void buildSchedule();
    void buildDuplicates();
    void buildModel();
    void buildNever();
    void buildUpdates();
    void showSchedule();
    void showDuplicateFolders();
    void addDuplicateFolder(const Location &folder);
    void setDuplicateFolders(const std::vector<Location> &folders);
    void tell(const Result<void> &stored);
    void showModel();
    void showNever();
    QWidget *rowWith(const QString &text, const QString &toolTip, QPushButton *button);

    AgentPorts m_ports;
    NoticeBar *m_problem;
    QComboBox *m_interval = nullptr;
    TextLabel *m_lastRun = nullptr;
    QVBoxLayout *m_folders = nullptr;
    QCheckBox *m_autoDuplicates = nullptr;
    TextLabel *m_modelStatus = nullptr;
    TextLabel *m_modelHint = nullptr;
    TextLabel *m_modelError = nullptr;
    QPushButton *m_modelRefresh = nullptr;
    QPushButton *m_modelForget = nullptr;
    QLineEdit *m_modelAddress = nullptr;
    QVBoxLayout *m_foundModels = nullptr;
    QVBoxLayout *m_never = nullptr;
};

} // namespace brellin
