#pragma once

#include "ContentView/BrowserModel.h"

#include <QWidget>

class QAbstractButton;

namespace brellin {

/// The heading of one of two panes: what it shows, where that is and how many entries it has. Marks the active pane.
class PaneHeading : public QWidget {
    Q_OBJECT
public:
    /// Both must outlive it.
    PaneHeading(BrowserModel &pane, const KnownFolders &folders, QWidget *parent);

    void setActive(bool active);

    Q_SIGNAL void clicked();
    Q_SIGNAL void closeRequested();

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QString title() const;
    QString path() const;
    void refresh();

    const BrowserModel &m_pane;
    const KnownFolders &m_folders;
    QAbstractButton *m_close;
    bool m_active = false;
};

} // namespace brellin
