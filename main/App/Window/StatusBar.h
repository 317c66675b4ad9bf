#pragma once

#include "ContentView/BrowserModel.h"

#include <QWidget>

namespace brellin {

/// The status line below the panes: the active pane's status text, and messages at the right.
class StatusBar : public QWidget {
    Q_OBJECT
public:
    explicit StatusBar(QWidget *parent);

    void setPane(BrowserModel *pane);
    /// Shows a message at the right for a few seconds.
    void say(const QString &message);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString rightText() const;

    QPointer<BrowserModel> m_pane;
    std::unique_ptr<QObject> m_following;
    QString m_said;
    QTimer m_saidEnds;
};

} // namespace brellin
