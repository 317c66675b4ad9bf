#pragma once

#include "Look/Tokens.h"

#include <QFrame>

class QVBoxLayout;

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

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QVBoxLayout *m_content;
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

} // namespace brellin
