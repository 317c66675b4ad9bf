#pragma once

#include <QFrame>

class QListWidget;

namespace brellin {

/// A popup for choosing a symbol by click or with arrow keys and Return. Deletes itself when closed.
class SymbolChoice : public QFrame {
    Q_OBJECT
public:
    SymbolChoice(const QString &current, QWidget *parent);

    /// `line` is the sidebar row, in screen coordinates.
    void openAt(const QRect &line);

    Q_SIGNAL void chosen(const QString &symbol);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void choose(const QString &symbol);

    QListWidget *m_list;
};

} // namespace brellin
