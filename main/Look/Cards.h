#pragma once

#include "Look/Tokens.h"

#include <QFrame>

class QVBoxLayout;
class QHBoxLayout;
class QScrollArea;

namespace brellin {

/// The soft shadow of what floats, drawn around `card` (its corners have the radius given); pre-rendered once per size.
void paintShadow(QPainter &painter, const QRectF &card, double radius);
/// How far the shadow reaches beyond the card.
int shadowReach();

/// A box with a thin line around it and round corners, as fields have them.
void paintBox(QPainter &painter, const QRect &place, Token ground);

/// A panel with round corners and a soft shadow. Its layout's margins leave room for the shadow; `content` is inside.
class Card : public QWidget {
    Q_OBJECT
public:
    explicit Card(QWidget *parent);
    QVBoxLayout *content() const { return m_content; }
    void setGround(Token token);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QVBoxLayout *m_content;
    Token m_ground = Token::Card;
};

/// A thin line between two things.
class Separator : public QFrame {
    Q_OBJECT
public:
    explicit Separator(Qt::Orientation orientation, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Qt::Orientation m_orientation;
};

/// A sheet over its dimmed window: title, content that scrolls where the window is small, buttons at the lower right. It
/// keeps the focus, closes with Esc, and deletes itself when closed. `open()` shows it; no event loop of its own.
class SheetFrame : public QWidget {
    Q_OBJECT
public:
    /// `wanted`: the size of the sheet where the window has room for it, in points at font factor 1. A height of 0: as high
    /// as its content.
    SheetFrame(const QString &title, const QString &subtitle, QSize wanted, QWidget *window);

    /// Where the content goes.
    QVBoxLayout *content() const { return m_content; }
    /// A column at the right on the window's ground, made at the first call.
    QVBoxLayout *side(int width);
    /// The row of buttons below, from left to right, pushed to the right.
    QHBoxLayout *buttons() const { return m_buttons; }
    void open();
    /// Tells `closed` and goes.
    void close();

    Q_SIGNAL void closed();

protected:
    /// What Esc does: closes, unless somebody overrides it.
    virtual void escape() { close(); }
    /// What Return does where no push button has the keys; one that has them is clicked.
    virtual void confirm() {}
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void fit();
    int heightOfContent(int width) const;

    QSize m_wanted;
    QWidget *m_panel;
    QWidget *m_inner;
    QVBoxLayout *m_content;
    QHBoxLayout *m_middle;
    QHBoxLayout *m_buttons;
    QVBoxLayout *m_side = nullptr;
    QWidget *m_focusBefore = nullptr;
};

} // namespace brellin
