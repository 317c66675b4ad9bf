#include "Transfers/Screens/RowParts.h"

#include "Look/Labels.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QProgressBar>

#include <utility>

namespace brellin::rowParts {

namespace {

class Mark : public QWidget {
public:
    Mark(QString symbol, Token token, QWidget *parent) : QWidget(parent), m_symbol(std::move(symbol)), m_token(token)
    {
        setFixedSize(scaled(18), scaled(18));
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        Symbols::paint(painter, rect(), m_symbol, color(m_token));
    }

private:
    const QString m_symbol;
    const Token m_token;
};

} // namespace

QWidget *makeMark(const QString &symbol, Token token, QWidget *parent)
{
    return new Mark(symbol, token, parent);
}

ElidedLabel *makeBoldLine(const QString &objectName, QWidget *parent)
{
    auto *const line = new ElidedLabel({}, Token::Text, 1, parent);
    line->setObjectName(objectName);
    const auto embolden = [line] { line->setFont(sizedFont(1, QFont::Bold)); };
    embolden();
    QObject::connect(&Theme::shared(), &Theme::changed, line, embolden);
    return line;
}

QProgressBar *makeBar(const QString &objectName, QWidget *parent)
{
    auto *const bar = new QProgressBar(parent);
    bar->setObjectName(objectName);
    bar->setTextVisible(false);
    bar->setRange(0, wholeBar);
    return bar;
}

QHBoxLayout *addLine(QVBoxLayout &column)
{
    auto *const line = new QHBoxLayout;
    line->setSpacing(scaled(8));
    column.addLayout(line);
    return line;
}

} // namespace brellin::rowParts
