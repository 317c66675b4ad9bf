#pragma once

#include "App/Window/WindowCommands.h"
#include "ContentView/Screens/AddressBar.h"
#include "ContentView/Screens/SearchField.h"
#include "Look/Buttons.h"

#include <QAction>
#include <QPointer>
#include <QSlider>
#include <QWidget>

#include <map>

namespace brellin {

/// The row of buttons above everything: where to, how to look at it, and the fields for path and search.
class Toolbar : public QWidget {
    Q_OBJECT
public:
    /// `actions` are the window's, one for each command.
    Toolbar(const std::map<CommandId, QAction *> &actions, AddressBar *address, SearchField *search, QWidget *parent);

    void setAgentBadge(int number);
    /// Shows what is switched on, and what can be used as its actions say.
    void showState(const CommandState &state);

    Q_SIGNAL void menuRequested(QWidget *under);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void buildSize();
    SymbolButton *add(CommandId id, const QString &symbol, const QString &help);

    const std::map<CommandId, QAction *> &m_actions;
    std::map<CommandId, SymbolButton *> m_buttons;
    QSlider *m_size = nullptr; ///< of the icons, while there are any
    QPointer<BrowserModel> m_pane;
    SearchField *m_search;
};

} // namespace brellin
