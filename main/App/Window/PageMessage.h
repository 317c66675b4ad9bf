#pragma once

#include "Look/Labels.h"

#include <QTimer>

namespace brellin {

/// A line below a page for what the status line and a pane's banner say where panes are shown. Hidden while it says
/// nothing.
class PageMessage : public TextLabel {
    Q_OBJECT
public:
    explicit PageMessage(QWidget *parent);

    /// Shows an outcome for a few seconds; together with its failure if that came right before.
    void say(const QString &message);
    /// Shows a failure until dismiss() or the next message.
    void fail(const QString &message);
    void dismiss();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void display(const QString &message, Token token);

    QTimer m_ends;
    QTimer m_failedNow; ///< active in the event in which fail() was called
};

} // namespace brellin
