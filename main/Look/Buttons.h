#pragma once

#include "Look/Tokens.h"

#include <QPushButton>
#include <QToolButton>

namespace brellin {

/// The purpose of a button, which determines its style. One primary button per page.
enum class ButtonKind { Usual, Primary, Danger, Plain, Link };

/// A button with a title and an optional symbol. The object name is for tests.
QPushButton *makeButton(const QString &title, ButtonKind kind, const QString &objectName, QWidget *parent,
                        const QString &symbol = {});

/// A square button that shows only a symbol; `title` is its tool tip and accessible name.
class SymbolButton : public QToolButton {
    Q_OBJECT
public:
    SymbolButton(const QString &symbol, const QString &title, const QString &objectName, QWidget *parent,
                 Token normal = Token::Text);

    void setSymbol(const QString &symbol);
    /// A red number at the upper right corner; hidden for 0.
    void setBadge(int number);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_title;
    Token m_normal;
    int m_badge = 0;
};

/// Paints the red badge number ("7", "99+"), centred on a point.
void paintBadgeNumber(QPainter &painter, QPointF center, int number);
double badgeNumberWidth(int number);

} // namespace brellin
