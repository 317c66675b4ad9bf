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

/// The projects area: the protected folders.
class ProjectsPage : public AgentPage {
    Q_OBJECT
public:
    ProjectsPage(const AgentPorts &ports, QWidget *parent);
    ~ProjectsPage() override;

    /// Detects what needs protection in a folder and opens the profile editor; for a folder with a profile opens that
    /// one.
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
    NoticeBar *m_notice; ///< offers to restore a removed profile
    std::optional<FolderProfile> m_removed;
    const std::shared_ptr<QThreadPool> m_pool;
    std::unique_ptr<Job<FolderProfile>> m_detection;
};

} // namespace brellin
