#pragma once

#include "Agent/Rules/RuleForecaster.h"
#include "App/Window/WindowServices.h"
#include "Features/PreviewLoader.h"

#include <QWidget>

namespace brellin {

class PreviewPane;

/// The preview of the window: what is in the entry chosen in the active pane, and what the rules would do with it.
class PreviewSide : public QWidget {
    Q_OBJECT
public:
    PreviewSide(const WindowServices &services, QWidget *parent);

    /// Shows the selected entry; where several are, or none: nothing (null). What is shown already is not read again.
    void show(const FileItem *selected);

    Q_SIGNAL void tagToggled(const QString &tag);

private:
    void askForHint();

    AgentPorts m_agent;
    const KnownFolders &m_folders;
    PreviewLoader m_loader;
    RuleForecaster m_forecaster;
    PreviewPane *m_pane;
    std::optional<FileItem> m_item; ///< the entry that is shown
};

/// "Regel „Rechnungen (PDF) ablegen“ würde diese Datei nach Dokumente › Rechnungen › 2026 verschieben."; empty where no rule
/// would take it.
QString hintText(const RuleForecast &forecast, const KnownFolders &folders);

} // namespace brellin
