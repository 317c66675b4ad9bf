#pragma once

#include "Look/Tokens.h"

#include <QWidget>

class QLabel;
class QPushButton;

namespace brellin {

class TextLabel;

/// A tinted one-line notice with an optional button.
class NoticeBar : public QWidget {
    Q_OBJECT
public:
    /// Starts hidden. An empty `button` means no button.
    NoticeBar(const QString &button, const QString &objectName, QWidget *parent);

    void tell(const QString &text, Token ink = Token::Text, Token ground = Token::AccentSoft);

    Q_SIGNAL void clicked();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    TextLabel *m_text;
    Token m_ground = Token::AccentSoft;
};

} // namespace brellin
