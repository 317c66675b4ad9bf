#pragma once

#include "Agent/Screens/AgentPage.h"
#include "Agent/Screens/AgentPorts.h"
#include "Base/Job.h"

#include <memory>

class QPushButton;
class QStackedWidget;
class QVBoxLayout;

namespace brellin {

class NoticeBar;

/// The projects area: the folders under protection.
class ProjectsPage : public AgentPage {
    Q_OBJECT
public:
    ProjectsPage(const AgentPorts &ports, QWidget *parent);
    ~ProjectsPage() override;

    /// Looks what in a folder needs protection, and offers a profile to edit; of one that has a profile, that one.
    void protect(const Location &folder);

    enum class ProfileState { New, Stored };
    Q_SIGNAL void editRequested(const brellin::FolderProfile &profile, brellin::ProjectsPage::ProfileState state);
    Q_SIGNAL void showRequested(const brellin::Location &entry);

private:
    void refresh();
    QWidget *rowFor(const FolderProfile &profile);
    void remove(const FolderProfile &profile);
    void undoRemoval();

    AgentPorts m_ports;
    QPushButton *m_protect;
    QStackedWidget *m_content;
    QVBoxLayout *m_rows;
    std::vector<QWidget *> m_shown;
    NoticeBar *m_notice; ///< a removed profile, with the way back
    std::optional<FolderProfile> m_removed;
    const std::shared_ptr<QThreadPool> m_pool;
    std::unique_ptr<Job<FolderProfile>> m_detection;
};

} // namespace brellin
