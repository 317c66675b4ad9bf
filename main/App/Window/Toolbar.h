#pragma once

#include "App/Window/Shortcuts.h"
#include "ContentView/Screens/AddressBar.h"
#include "ContentView/Screens/SearchField.h"
#include "Look/Buttons.h"

#include <QAction>
#include <QPointer>
#include <QSlider>
#include <QWidget>

#include <map>

namespace brellin {

/// The toolbar: navigation, view mode, address bar and search field.
class Toolbar : public QWidget {
    Q_OBJECT
public:
    /// `actions` are the window's, one per command; they must outlive the toolbar.
    Toolbar(const std::map<CommandId, QAction *> &actions, AddressBar *address, SearchField *search, QWidget *parent);

    void setAgentBadge(int number);
    /// Updates which buttons are enabled and checked. Call after the actions were updated.
    void showState(const CommandState &state);
    /// Shows the commands' keys in the tool tips.
    void showKeys(const Shortcuts &shortcuts);
    /// The button that opens the menu of all commands.
    QWidget *menuButton() const { return m_more; }

    Q_SIGNAL void menuRequested(QWidget *under);
    /// Long press or right click on the arrow.
    Q_SIGNAL void historyRequested(brellin::NavigationHistory::Way way, QWidget *under);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void buildSize();
    void offerHistory(SymbolButton *arrow, NavigationHistory::Way way);
    SymbolButton *add(CommandId id, const QString &symbol, const QString &help);

    const std::map<CommandId, QAction *> &m_actions;
    std::map<CommandId, SymbolButton *> m_buttons;
    std::map<CommandId, QString> m_helps; ///< tool tips without keys
    SymbolButton *m_more = nullptr;
    QSlider *m_size = nullptr; ///< icon size; visible in icon view only
    QPointer<BrowserModel> m_pane;
    SearchField *m_search;
};

} // namespace brellin
