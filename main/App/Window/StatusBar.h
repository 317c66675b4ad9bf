#pragma once

#include "ContentView/BrowserModel.h"

#include <QWidget>

namespace brellin {

/// The line below the panes: what the active one holds, and what is being done in it.
class StatusBar : public QWidget {
    Q_OBJECT
public:
    explicit StatusBar(QWidget *parent);

    void setPane(BrowserModel *pane);
    /// Says something for a few seconds at the right.
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
