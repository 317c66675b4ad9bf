#pragma once

#include "Look/Tokens.h"

#include <QFrame>

class QVBoxLayout;
class QHBoxLayout;
class QScrollArea;

namespace brellin {

/// Paints the soft shadow of a floating element around `card`, whose corners have this radius. Pre-rendered once per
/// size.
void paintShadow(QPainter &painter, const QRectF &card, double radius);
/// How far the shadow extends beyond the card.
int shadowReach();

/// Paints a rounded box with a thin border, as around fields.
void paintBox(QPainter &painter, const QRect &place, Token ground);

/// A panel with rounded corners and a soft shadow. Its layout margins leave room for the shadow; `content` is the inner
/// layout.
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

/// A thin separator line.
class Separator : public QFrame {
    Q_OBJECT
public:
    explicit Separator(Qt::Orientation orientation, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Qt::Orientation m_orientation;
};

/// A modal sheet over its dimmed window: title, content (scrolls in a small window), buttons at the lower right. Traps
/// the focus, closes with Esc and deletes itself when closed. Show it with `open()`, which does not block.
class SheetFrame : public QWidget {
    Q_OBJECT
public:
    /// `wanted` is the preferred size in points at font factor 1, limited by the window. Height 0 fits the content.
    SheetFrame(const QString &title, const QString &subtitle, QSize wanted, QWidget *window);

    /// The layout for the content.
    QVBoxLayout *content() const { return m_content; }
    /// A column at the right with the window's background; created on first use.
    QVBoxLayout *side(int width);
    /// The row of buttons, right-aligned.
    QHBoxLayout *buttons() const { return m_buttons; }
    void open();
    /// Hides the sheet, emits `closed` and deletes it later.
    void close();

    Q_SIGNAL void closed();

protected:
    /// Called on Esc; closes by default.
    virtual void escape() { close(); }
    /// Called on Return if no push button has the focus; Return activates a focused button.
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
