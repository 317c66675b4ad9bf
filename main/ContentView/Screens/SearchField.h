#pragma once

#include "ContentView/BrowserModel.h"

#include <QLineEdit>

namespace brellin {

/// The search field for the active pane; shows whether a search is running.
class SearchField : public QLineEdit {
    Q_OBJECT
public:
    SearchField(const KnownFolders &folders, QWidget *parent);

    void setPane(BrowserModel *pane);
    /// Esc: the focus belongs to the list.
    Q_SIGNAL void left();
    /// The down arrow: to the first of the entries.
    Q_SIGNAL void wentDown();
    /// Tab during a search: to its filters.
    Q_SIGNAL void wentOn();

    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void showState();
    void endSearch();

    const KnownFolders &m_folders;
    QPointer<BrowserModel> m_pane;
    std::unique_ptr<QObject> m_following;
    QAction *m_symbol;
    QAction *m_clear;
};

} // namespace brellin
