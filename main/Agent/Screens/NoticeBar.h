#pragma once

#include "Look/Tokens.h"

#include <QWidget>

class QLabel;
class QPushButton;

namespace brellin {

class TextLabel;

/// One line on a tinted ground that says what has happened, with a button for it.
class NoticeBar : public QWidget {
    Q_OBJECT
public:
    /// Hidden at first. Without a title for the button there is none.
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
