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
    /// Emitted by Esc or Down: the focus should return to the list.
    Q_SIGNAL void left();

    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void showState();

    const KnownFolders &m_folders;
    QPointer<BrowserModel> m_pane;
    std::unique_ptr<QObject> m_following;
    QAction *m_symbol;
    QAction *m_clear;
};

} // namespace brellin
