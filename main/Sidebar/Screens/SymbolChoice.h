#pragma once

#include <QFrame>

class QListWidget;

namespace brellin {

/// A small window in which a symbol is chosen: with a click, or with the arrow keys and Return. Goes by itself.
class SymbolChoice : public QFrame {
    Q_OBJECT
public:
    SymbolChoice(const QString &current, QWidget *parent);

    /// Opens beside a line of the sidebar, on the screen.
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
