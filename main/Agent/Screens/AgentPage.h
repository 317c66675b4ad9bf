#pragma once

#include <QWidget>

class QHBoxLayout;
class QVBoxLayout;

namespace brellin {

class Card;

/// A page behind the start page: the way back, its title, actions at the right, and what it shows.
class AgentPage : public QWidget {
    Q_OBJECT
public:
    AgentPage(const QString &title, QWidget *parent);

    Q_SIGNAL void backRequested();

protected:
    /// The row at the right of the title.
    QHBoxLayout *actions() const { return m_actions; }
    QVBoxLayout *body() const { return m_body; }

private:
    QHBoxLayout *m_actions;
    QVBoxLayout *m_body;
};

/// A page whose feature is still to come.
class ComingPage : public AgentPage {
    Q_OBJECT
public:
    ComingPage(const QString &title, const QString &symbol, const QString &text, QWidget *parent);
};

/// The column of a page that scrolls: at most `width` wide (in points at font factor 1), from the left.
QVBoxLayout *addScrollingColumn(QVBoxLayout *body, QWidget *page, const QString &objectName, int width);

/// The room inside a card that is a row of such a column.
void padCard(Card &card);

} // namespace brellin
