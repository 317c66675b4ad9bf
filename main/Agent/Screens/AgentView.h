#pragma once

#include "Agent/Screens/AgentArea.h"
#include "Agent/Screens/AgentPorts.h"

#include <QPointer>
#include <QWidget>

class QStackedWidget;

namespace brellin {

class AgentPage;
class ProfileEditor;
class SheetFrame;
class StartPage;

/// The agent's page in the window: start page with cards, areas, sheets and guide. Shows and edits what the agent
/// publishes, and starts its operations.
class AgentView : public QWidget {
    Q_OBJECT
public:
    AgentView(const AgentPorts &ports, QWidget *parent);

    void showStart();
    void open(AgentArea area);
    void showGuide();
    void openSheet(AgentSheet sheet);
    /// Asks for a folder to analyse, and shows the result.
    void askForAnalysis();
    void analyze(const Location &folder);
    /// The area shown; nullopt: the start page or the guide.
    std::optional<AgentArea> area() const { return m_area; }
    /// "Aufräum-Agent › Aufräumen"
    const QString &path() const { return m_path; }
    /// Repaints, after new thumbnails have arrived.
    void refreshThumbnails();

    Q_SIGNAL void pathChanged(const QString &path);
    /// Asks the window to show this entry in a pane.
    Q_SIGNAL void showRequested(const brellin::Location &entry);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void buildStart();
    void buildAreas();
    void addArea(AgentArea area, AgentPage *page);
    void show(QWidget *page, std::optional<AgentArea> area, const QString &title);
    void present(SheetFrame *sheet);
    void presentComing(AgentSheet sheet, const QString &symbol, const QString &text);
    void scan();
    void handOver();
    void preview(const QUuid &proposal);
    void followPendingProfile();
    void editPendingProfile(const FolderProfile &pending);
    void tellAttention();

    AgentPorts m_ports;
    QStackedWidget *m_pages;
    StartPage *m_start = nullptr;
    std::vector<std::pair<AgentArea, AgentPage *>> m_areas;
    AgentPage *m_guide = nullptr; ///< created on first use
    std::optional<AgentArea> m_area;
    QString m_path;
    int m_openSheets = 0;
    QPointer<ProfileEditor> m_pendingEditor;
};

} // namespace brellin
