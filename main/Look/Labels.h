#pragma once

#include "Look/Tokens.h"

#include <QFont>
#include <QLabel>

namespace brellin {

/// A plain-text label in one of the theme's colours and sizes; follows the appearance and the font size. Never
/// interprets markup.
class TextLabel : public QLabel {
    Q_OBJECT
public:
    TextLabel(const QString &text, Token token, double factor, QFont::Weight weight, QWidget *parent);
    void setToken(Token token);

private:
    void dress();

    Token m_token;
    double m_factor;
    QFont::Weight m_weight;
};

/// Common styles. All wrap, except `heading` and `title`.
TextLabel *makeBody(const QString &text, QWidget *parent);
TextLabel *makeSecondary(const QString &text, QWidget *parent);
TextLabel *makeHeading(const QString &text, QWidget *parent); ///< heading of a section
TextLabel *makeTitle(const QString &text, QWidget *parent);   ///< title of a page

/// A one-line label, elided in the middle, with the full text as tool tip.
class ElidedLabel : public TextLabel {
    Q_OBJECT
public:
    ElidedLabel(const QString &text, Token token, double factor, QWidget *parent,
                Qt::TextElideMode mode = Qt::ElideMiddle);
    void setText(const QString &text);
    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_whole;
    Qt::TextElideMode m_mode;
};

/// The placeholder of an empty list: a symbol, a title, and a hint how to fill it.
class EmptyState : public QWidget {
    Q_OBJECT
public:
    EmptyState(const QString &symbol, const QString &title, const QString &text, QWidget *parent);
    void setTexts(const QString &title, const QString &text);
    void setSymbol(const QString &symbol, Token token);
    /// Adds a button below the texts.
    void addButton(QWidget *button);

private:
    QLabel *m_symbol;
    TextLabel *m_title;
    TextLabel *m_text;
};

} // namespace brellin
