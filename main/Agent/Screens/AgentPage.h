#pragma once

#include <QWidget>

class QHBoxLayout;
class QVBoxLayout;

namespace brellin {

class Card;

/// A page behind the start page: back button, title, actions at the right, and a body.
class AgentPage : public QWidget {
    Q_OBJECT
public:
    AgentPage(const QString &title, QWidget *parent);

    Q_SIGNAL void backRequested();

protected:
    /// The row of buttons to the right of the title.
    QHBoxLayout *actions() const { return m_actions; }
    QVBoxLayout *body() const { return m_body; }

private:
    QHBoxLayout *m_actions;
    QVBoxLayout *m_body;
};

/// Placeholder for a feature that is not implemented yet.
class ComingPage : public AgentPage {
    Q_OBJECT
public:
    ComingPage(const QString &title, const QString &symbol, const QString &text, QWidget *parent);
};

/// A scrolling, left-aligned column, at most `width` points wide (at font factor 1).
QVBoxLayout *addScrollingColumn(QVBoxLayout *body, QWidget *page, const QString &objectName, int width);

/// Sets the margins of a card that is a row of such a column.
void padCard(Card &card);

} // namespace brellin
