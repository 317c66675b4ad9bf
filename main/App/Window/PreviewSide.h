#pragma once

#include "Agent/Rules/RuleForecaster.h"
#include "App/Window/WindowServices.h"
#include "Features/PreviewLoader.h"
#include "Features/PreviewSummary.h"

#include <QWidget>

namespace brellin {

class PreviewPane;

/// The window's preview of the selected entry, with a hint of what the agent's rules would do with it.
class PreviewSide : public QWidget {
    Q_OBJECT
public:
    PreviewSide(const WindowServices &services, QWidget *parent);

    /// Null if none or several are selected, which `several` summarises. An unchanged item is not loaded again.
    void show(const FileItem *selected, const std::optional<PreviewSummary> &several);

    Q_SIGNAL void tagToggled(const QString &tag);

private:
    void askForHint();

    AgentPorts m_agent;
    const KnownFolders &m_folders;
    PreviewLoader m_loader;
    RuleForecaster m_forecaster;
    PreviewPane *m_pane;
    std::optional<FileItem> m_item; ///< the item shown
};

/// "Regel „Rechnungen (PDF) ablegen“ würde diese Datei nach Dokumente › Rechnungen › 2026 verschieben."; empty if no
/// rule matches.
QString hintText(const RuleForecast &forecast, const KnownFolders &folders);

} // namespace brellin
