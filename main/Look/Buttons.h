#pragma once

#include "Look/Tokens.h"

#include <QPushButton>
#include <QToolButton>

namespace brellin {

/// What a button is for decides how it looks. One primary button per page.
enum class ButtonKind { Usual, Primary, Danger, Plain, Link };

/// A button with a title and, where named, a symbol before it. The object name is for tests.
QPushButton *makeButton(const QString &title, ButtonKind kind, const QString &objectName, QWidget *parent,
                        const QString &symbol = {});

/// A square button that shows a symbol alone: `title` is its tool tip and its accessible name.
class SymbolButton : public QToolButton {
    Q_OBJECT
public:
    SymbolButton(const QString &symbol, const QString &title, const QString &objectName, QWidget *parent,
                 Token normal = Token::Text);

    void setSymbol(const QString &symbol);
    /// A number at the upper right corner, red; none for 0.
    void setBadge(int number);
    /// Why the button cannot be used, in its tool tip; empty: it can be.
    void setUnusable(const QString &reason);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_title;
    Token m_normal;
    int m_badge = 0;
};

/// The red number: "7", "99+". Centred on a place.
void paintBadgeNumber(QPainter &painter, QPointF center, int number);
double badgeNumberWidth(int number);

} // namespace brellin
