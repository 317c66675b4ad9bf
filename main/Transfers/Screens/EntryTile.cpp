#include "Transfers/Screens/EntryTile.h"

#include "Features/Screens/DocumentPicture.h"
#include "Look/Cards.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QPainter>
#include <QVBoxLayout>

#include <utility>

namespace brellin {

namespace {

constexpr int symbolSide = 44;
constexpr int margin = 12;

/// Splits into "1,2 MB" and "3. September 2026, 14:05"; the date with its time comes last.
std::pair<QString, QString> withoutDate(const QString &line)
{
    const QString comma = QStringLiteral(", ");
    const qsizetype parts = line.split(comma).size();
    if (parts < 3)
        return {line, {}};
    return {line.section(comma, 0, parts - 3), line.section(comma, parts - 2)};
}

} // namespace

EntryTile::EntryTile(const QString &head, const QString &line, Entry entry, QWidget *parent)
    : QWidget(parent)
    , m_entry(std::move(entry))
{
    setAccessibleName(head + u' ' + line);
    setToolTip(m_entry.name);
    const auto [what, date] = withoutDate(line);
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(scaled(2 * margin + symbolSide), scaled(margin), scaled(margin), scaled(margin));
    column->setSpacing(scaled(2));
    column->addWidget(makeHeading(head, this));
    column->addWidget(makeBody(what, this));
    column->addWidget(makeSecondary(date, this));
    column->addStretch(1);
}

QPixmap EntryTile::symbol() const
{
    if (m_entry.shape == Shape::Folder)
        return EntryIcons::folder(scaled(symbolSide), devicePixelRatioF());
    return documentPicture(m_entry.name.toStdString(), scaled(symbolSide), devicePixelRatioF());
}

void EntryTile::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paintBox(painter, rect(), Token::Window);
    painter.drawPixmap(QPoint(scaled(margin), scaled(margin)), symbol());
}

} // namespace brellin
