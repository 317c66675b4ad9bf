#include "App/Window/PaneHeading.h"

#include "App/Window/PlaceTitles.h"
#include "Base/German.h"
#include "Look/Buttons.h"
#include "Look/Digits.h"
#include "Look/EntryIcons.h"
#include "Look/Theme.h"
#include "Places/Crumbs.h"

#include <QMouseEvent>
#include <QPainter>

namespace brellin {

PaneHeading::PaneHeading(BrowserModel &pane, const KnownFolders &folders, QWidget *parent)
    : QWidget(parent)
    , m_pane(pane)
    , m_folders(folders)
    , m_close(new SymbolButton(QStringLiteral("x"), QStringLiteral("Diesen Ordner schließen"),
                               QStringLiteral("closePane"), this, Token::Secondary))
{
    setObjectName(QStringLiteral("paneHeading"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    m_close->setFocusPolicy(Qt::NoFocus);
    connect(m_close, &QAbstractButton::clicked, this, &PaneHeading::closeRequested);
    pane.place.observe(this, [this](const Place &) { refresh(); });
    pane.displayedItems.observe(this, [this](const auto &) { update(); });
    refresh();
}

QSize PaneHeading::sizeHint() const
{
    return {scaled(200), scaled(42)};
}

void PaneHeading::setActive(bool active)
{
    m_active = active;
    refresh();
}

/// A page covers the folder and is shown in both panes' place.
QString PaneHeading::title() const
{
    const Place &place = m_pane.place.get();
    return place.coversFolder() ? m_folders.title(m_pane.current.get()) : titleOf(place, m_folders);
}

/// „Benutzerordner › Dokumente“, without the folder itself.
QString PaneHeading::path() const
{
    if (m_pane.place.get().kind != Place::Kind::Folder && !m_pane.place.get().coversFolder())
        return {};
    QStringList above;
    for (const Crumb &crumb : crumbsOf(m_pane.current.get(), m_folders))
        above << crumb.title;
    above.removeLast();
    return above.join(QStringLiteral(" › "));
}

void PaneHeading::refresh()
{
    setAccessibleName(m_active ? title() + QStringLiteral(", aktiv") : title());
    setToolTip(shown(m_pane.current.get()));
    update();
}

void PaneHeading::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        Q_EMIT clicked();
}

void PaneHeading::resizeEvent(QResizeEvent *)
{
    const int side = scaled(26);
    m_close->setGeometry(width() - side - scaled(8), (height() - side) / 2 + 1, side, side);
}

void PaneHeading::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), color(m_active ? Token::AccentSoft : Token::Window));
    painter.fillRect(QRect(0, height() - 1, width(), 1), color(Token::Line));
    if (m_active)
        painter.fillRect(QRect(0, 0, width(), 3), color(Token::Accent));
    const int side = scaled(18);
    painter.drawPixmap(scaled(14), (height() - side) / 2 + 1, EntryIcons::folder(side, devicePixelRatioF()));

    QRectF room = QRectF(rect()).adjusted(scaled(43), 3, -scaled(48), 0);
    const auto write = [&](const QString &text, const QFont &font, Token ink, Qt::TextElideMode elide) {
        painter.setFont(font);
        painter.setPen(color(ink));
        const QString fitting = painter.fontMetrics().elidedText(text, elide, static_cast<int>(room.width()));
        painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, fitting);
        room.setLeft(room.left() + painter.fontMetrics().horizontalAdvance(fitting) + scaled(10));
    };
    write(title(), sizedFont(1.08, QFont::Bold), m_active ? Token::Text : Token::Secondary, Qt::ElideMiddle);
    const QString count = counted(static_cast<qint64>(m_pane.displayedItems.get().size()), QStringLiteral("Element"),
                                  QStringLiteral("Elemente"));
    const QFont small = sizedFont(0.92);
    const double needed = digitsWidth(small, count) + 1;
    if (room.width() >= needed) {
        painter.setFont(small);
        painter.setPen(color(Token::Secondary));
        paintDigits(painter, room, count, Qt::AlignRight);
        room.setRight(room.right() - needed - scaled(12));
    }
    // A few letters of a path tell nothing.
    if (room.width() > scaled(70))
        write(path(), small, Token::Secondary, Qt::ElideMiddle);
}

} // namespace brellin
