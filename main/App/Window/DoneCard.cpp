#include "App/Window/DoneCard.h"

#include "Look/Buttons.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QHBoxLayout>

#include <chrono>

namespace brellin {

namespace {

/// Long enough to read it and go there with the mouse.
constexpr std::chrono::seconds shownFor{12};

} // namespace

DoneCard::DoneCard(QWidget *window)
    : Card(window)
    , m_what(new TextLabel({}, Token::Text, 1, QFont::DemiBold, this))
    , m_names(new ElidedLabel({}, Token::Secondary, 0.92, this))
{
    setObjectName(QStringLiteral("doneCard"));
    auto *const row = new QHBoxLayout;
    row->setSpacing(scaled(12));
    auto *const sign = new QLabel(this);
    const auto dress = [sign] {
        sign->setPixmap(Symbols::pixmap(QStringLiteral("circle-check"), scaled(20), color(Token::Success),
                                        sign->devicePixelRatioF()));
    };
    dress();
    row->addWidget(sign);
    auto *const texts = new QVBoxLayout;
    texts->setSpacing(scaled(2));
    m_what->setObjectName(QStringLiteral("doneText"));
    texts->addWidget(m_what);
    texts->addWidget(m_names);
    row->addLayout(texts, 1);
    QPushButton *const undo = makeButton(QStringLiteral("Rückgängig"), ButtonKind::Usual, QStringLiteral("doneUndo"),
                                         this, QStringLiteral("undo-2"));
    row->addWidget(undo);
    auto *const close = new SymbolButton(QStringLiteral("x"), QStringLiteral("Meldung schließen"),
                                         QStringLiteral("doneClose"), this, Token::Secondary);
    row->addWidget(close);
    // The keyboard has its own key for this; a click leaves the focus in the list.
    for (QWidget *const one : std::initializer_list<QWidget *>{undo, close})
        one->setFocusPolicy(Qt::NoFocus);
    content()->addLayout(row);
    m_ends.setSingleShot(true);
    connect(&m_ends, &QTimer::timeout, this, &QWidget::hide);
    connect(undo, &QAbstractButton::clicked, this, &QWidget::hide);
    connect(undo, &QAbstractButton::clicked, this, &DoneCard::undoRequested);
    connect(close, &QAbstractButton::clicked, this, &QWidget::hide);
    connect(&Theme::shared(), &Theme::changed, sign, dress);
    hide();
}

void DoneCard::tell(const QString &what, const QString &names)
{
    m_what->setText(what);
    m_names->setText(names);
    m_names->setVisible(!names.isEmpty());
    m_ends.start(shownFor);
    Q_EMIT placeWanted();
    show();
    raise();
}

void DoneCard::placeIn(const QRect &area, const QWidget *over)
{
    const int gap = scaled(4); // besides the shadow
    const QSize wanted = sizeHint().expandedTo(QSize(scaled(380), 0)).boundedTo(area.size());
    const int bottom = over && over->isVisible() ? over->y() : area.bottom() + 1 - gap;
    setGeometry(area.right() + 1 - gap - wanted.width(), bottom - wanted.height(), wanted.width(), wanted.height());
}

void DoneCard::enterEvent(QEnterEvent *)
{
    m_ends.stop();
}

void DoneCard::leaveEvent(QEvent *)
{
    m_ends.start(shownFor);
}

} // namespace brellin
