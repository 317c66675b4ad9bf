#pragma once

#include "ContentView/BrowserModel.h"

#include <QWidget>

class QPushButton;

namespace brellin {

/// The status line below the panes: the active pane's status text, messages at the right, and „Einzelheiten“ after a
/// search that could not read all folders.
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
    void resizeEvent(QResizeEvent *event) override;

private:
    QString rightText() const;
    void showState();
    void placeDetails();
    void showNotSearched();

    QPointer<BrowserModel> m_pane;
    std::unique_ptr<QObject> m_following;
    QString m_said;
    QTimer m_saidEnds;
    QPushButton *m_details;
};

} // namespace brellin
