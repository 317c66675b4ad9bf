#include "Agent/Screens/ProposalRow.h"

#include "Agent/Screens/AgentTexts.h"
#include "Agent/Screens/EntryPicture.h"
#include "Agent/Screens/RowPainting.h"
#include "Look/Cards.h"
#include "Look/Digits.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QMap>
#include <QPainter>

namespace brellin {

namespace {

constexpr double tickSide = 16;
constexpr double rowPictureSide = 28;
constexpr int narrowWidth = 640; ///< below it the reason goes under the road

int headHeight()
{
    return scaled(40);
}

/// Cached: called for every row of a long list whenever one changes.
int lineHeight(double factor)
{
    static QMap<std::pair<double, double>, int> known;
    const std::pair key(factor, QApplication::font().pointSizeF());
    if (!known.contains(key))
        known.insert(key, QFontMetrics(sizedFont(factor)).height());
    return known.value(key);
}

} // namespace

/// The areas of a row, from left to right.
struct ProposalRow::Places {
    QRect body; ///< the row without the gap below
    QRect tick;
    QRect picture;
    QRect name;
    QRect road;
    QRect reason;
    QRect preview;
    QRect discard;
};

ProposalRow::ProposalRow(const AgentPorts &ports, ProposalModel &model, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_ports(ports)
    , m_model(model)
{
}

int ProposalRow::gap()
{
    return scaled(16);
}

void ProposalRow::setHovered(const QModelIndex &index, ProposalPart part)
{
    m_hovered = index;
    m_hoveredPart = part;
}

ProposalRow::Places ProposalRow::placesIn(const QRect &row, bool isLast)
{
    Places places;
    places.body = row.adjusted(shadowReach(), 0, -shadowReach(), isLast ? -gap() : 0);
    const QRect inner = places.body.adjusted(scaled(16), 0, -scaled(14), 0);
    const int middle = inner.center().y() + 1;
    const auto centered = [&](int left, int side) { return QRect(left, middle - side / 2, side, side); };
    places.tick = centered(inner.left(), scaled(tickSide));
    places.picture = centered(places.tick.right() + scaled(13), scaled(rowPictureSide));
    const int action = scaled(34);
    places.discard = centered(inner.right() - action, action);
    places.preview = centered(places.discard.left() - action - scaled(8), action);
    const int left = places.picture.right() + scaled(13);
    const int right = places.preview.left() - scaled(14);
    const int name = lineHeight(1);
    const int road = lineHeight(0.92);
    const bool narrow = row.width() < scaled(narrowWidth);
    const int reasonWidth = narrow ? right - left : std::clamp((right - left) * 2 / 5, scaled(180), scaled(340));
    const int textRight = narrow ? right : right - reasonWidth - scaled(20);
    const int lines = name + scaled(2) + road + (narrow ? scaled(2) + road : 0);
    const int top = middle - lines / 2;
    places.name = QRect(left, top, textRight - left, name);
    places.road = QRect(left, places.name.bottom() + 1 + scaled(2), textRight - left, road);
    places.reason = narrow ? QRect(left, places.road.bottom() + 1 + scaled(2), right - left, road)
                           : QRect(right - reasonWidth, middle - road, reasonWidth, 2 * road);
    return places;
}

QSize ProposalRow::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const ProposalModel::Row &row = m_model.at(index.row());
    const int below = row.isLast ? gap() : 0;
    if (row.group)
        return {0, headHeight()};
    // The option has no width while sizes are computed.
    const auto *const view = qobject_cast<const QAbstractScrollArea *>(option.widget);
    const int lines = view && view->viewport()->width() < scaled(narrowWidth) ? 2 : 1;
    const int text = lineHeight(1) + lines * (lineHeight(0.92) + scaled(2));
    return {0, std::max(text + scaled(16), scaled(54)) + below};
}

ProposalPart ProposalRow::partAt(const QRect &row, int rowNumber, QPoint place) const
{
    const ProposalModel::Row &at = m_model.at(rowNumber);
    const Places places = placesIn(row, at.isLast);
    if (!places.body.contains(place))
        return ProposalPart::None;
    // The whole left edge counts as the tick: a small box is hard to hit.
    if (place.x() < places.picture.left() - scaled(4))
        return ProposalPart::Tick;
    if (at.group)
        return ProposalPart::Row;
    if (places.preview.contains(place))
        return ProposalPart::Preview;
    return places.discard.contains(place) ? ProposalPart::Discard : ProposalPart::Row;
}

QString ProposalRow::toolTip(int rowNumber, ProposalPart part) const
{
    const ProposalModel::Row &row = m_model.at(rowNumber);
    if (!row.proposal || part == ProposalPart::None)
        return {};
    if (part == ProposalPart::Preview)
        return QStringLiteral("Ansehen (Eingabetaste)");
    if (part == ProposalPart::Discard)
        return QStringLiteral("Vorschlag verwerfen (Entf)");
    const AgentProposal &proposal = *row.proposal;
    QStringList lines{shown(proposal.source)};
    lines << (proposal.destination ? QStringLiteral("→ ") + shown(*proposal.destination)
                                   : QStringLiteral("→ Papierkorb"));
    if (const QString failed = m_model.failureOf(proposal); !failed.isEmpty())
        lines << QStringLiteral("Fehlgeschlagen: ") + failed;
    lines << proposal.reason;
    return lines.join(u'\n');
}

void ProposalRow::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const ProposalModel::Row &row = m_model.at(index.row());
    const Places places = placesIn(option.rect, row.isLast);
    const bool current = option.state.testFlag(QStyle::State_HasFocus);
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    const QRect ground = places.body;
    paintRowGround(*painter, ground, selected ? RowGround::Selected : RowGround::Plain,
                   (row.group ? RowEdge::Top : RowEdge::None) | (row.isLast ? RowEdge::Bottom : RowEdge::None));
    if (!row.isLast)
        painter->fillRect(QRect(ground.left(), ground.bottom(), ground.width(), 1), color(Token::Line));
    const auto state = static_cast<Qt::CheckState>(index.data(Qt::CheckStateRole).toInt());
    const bool overTick = m_hovered == index && m_hoveredPart == ProposalPart::Tick;
    paintTick(*painter, places.tick, state, overTick, current && option.widget && option.widget->hasFocus());
    if (row.group)
        paintGroup(*painter, places.body, *row.group);
    else
        paintProposal(*painter, *row.proposal, places);
    painter->restore();
}

void ProposalRow::paintGroup(QPainter &painter, const QRect &row, const ProposalGroup &group) const
{
    const int left = row.left() + scaled(16) + scaled(tickSide) + scaled(12);
    painter.setFont(sizedFont(1, QFont::DemiBold));
    painter.setPen(color(Token::Text));
    const int width = painter.fontMetrics().horizontalAdvance(group.title());
    painter.drawText(QRect(left, row.top(), width + 2, row.height()), Qt::AlignVCenter, group.title());
    painter.setFont(sizedFont(1));
    painter.setPen(color(Token::Secondary));
    const int countLeft = left + width + scaled(12);
    paintDigits(painter, QRect(countLeft, row.top(), row.right() - countLeft, row.height()), group.countText());
}

void ProposalRow::paintProposal(QPainter &painter, const AgentProposal &proposal, const Places &places) const
{
    paintPicture(painter, places.picture, proposal);
    paintName(painter, places.name, proposal);
    paintRoad(painter, places.road, proposal);
    paintReason(painter, places.reason, proposal);
    const bool here = m_hovered.isValid() && m_model.at(m_hovered.row()).proposal &&
                      m_model.at(m_hovered.row()).proposal->id == proposal.id;
    paintAction(painter, places.preview, QStringLiteral("eye"), here && m_hoveredPart == ProposalPart::Preview);
    paintAction(painter, places.discard, QStringLiteral("x"), here && m_hoveredPart == ProposalPart::Discard);
}

void ProposalRow::paintPicture(QPainter &painter, const QRect &place, const AgentProposal &proposal) const
{
    paintEntry(painter, place, m_ports, proposal.source, proposal.isFolder ? EntryShape::Folder : EntryShape::File);
}

void ProposalRow::paintName(QPainter &painter, const QRect &place, const AgentProposal &proposal) const
{
    const QString mark = QStringLiteral("Prüfung empfohlen");
    const QFont small = sizedFont(0.88, QFont::DemiBold);
    const int symbol = scaled(12);
    const int chipWidth = proposal.needsReview ? QFontMetrics(small).horizontalAdvance(mark) + symbol + scaled(20) : 0;
    painter.setFont(sizedFont(1, QFont::DemiBold));
    painter.setPen(color(Token::Text));
    const int room = place.width() - (chipWidth > 0 ? chipWidth + scaled(8) : 0);
    const QString name = painter.fontMetrics().elidedText(shownName(proposal.source), Qt::ElideMiddle, room);
    painter.drawText(place, Qt::AlignVCenter, name);
    if (chipWidth == 0)
        return;
    const int left = place.left() + painter.fontMetrics().horizontalAdvance(name) + scaled(8);
    const QRect chip(left, place.top(), chipWidth, place.height());
    painter.setPen(Qt::NoPen);
    painter.setBrush(color(Token::WarningSoft));
    painter.drawRoundedRect(chip, 6, 6);
    Symbols::paint(painter, QRectF(left + scaled(6), chip.center().y() - symbol / 2.0 + 0.5, symbol, symbol),
                   QStringLiteral("triangle-alert"), color(Token::Warning));
    painter.setFont(small);
    painter.setPen(color(Token::Warning));
    painter.drawText(chip.adjusted(symbol + scaled(10), 0, 0, 0), Qt::AlignVCenter, mark);
}

/// "Downloads → Dokumente › Rechnungen › 2026"; elides the common folders first, then the middle.
void ProposalRow::paintRoad(QPainter &painter, const QRect &place, const AgentProposal &proposal) const
{
    const ProposalRoad road = roadOf(proposal, m_ports.services.folders.home);
    const QString mark = QStringLiteral(" › ");
    painter.setFont(sizedFont(0.92));
    const QFontMetrics metrics = painter.fontMetrics();
    QString from = road.from.join(mark);
    QString to = proposal.destination ? road.to.join(mark) : QStringLiteral("Papierkorb");
    const QString arrow = QStringLiteral(" → ");
    const int symbol = proposal.destination ? 0 : scaled(14);
    const int room = place.width() - metrics.horizontalAdvance(arrow) - symbol;
    if (const qsizetype same = road.shared();
        metrics.horizontalAdvance(from + to) > room && same > 0 && same < road.to.size())
        to = QStringLiteral("… › ") + road.to.mid(same).join(mark);
    if (metrics.horizontalAdvance(from + to) > room) {
        const int target =
            std::min(metrics.horizontalAdvance(to), std::max(room / 2, room - metrics.horizontalAdvance(from)));
        to = metrics.elidedText(to, Qt::ElideMiddle, target);
        from = metrics.elidedText(from, Qt::ElideMiddle, room - metrics.horizontalAdvance(to));
    }
    const Token ink = proposal.destination ? Token::Text : Token::Danger;
    painter.setPen(color(Token::Secondary));
    painter.drawText(place, Qt::AlignVCenter, from + arrow);
    int left = place.left() + metrics.horizontalAdvance(from + arrow);
    if (symbol > 0) {
        const int side = scaled(13);
        Symbols::paint(painter, QRectF(left, place.center().y() - side / 2.0, side, side), QStringLiteral("trash-2"),
                       color(ink));
        left += symbol + scaled(3);
    }
    painter.setPen(color(ink));
    painter.drawText(QRect(left, place.top(), place.right() - left + 1, place.height()), Qt::AlignVCenter, to);
}

void ProposalRow::paintReason(QPainter &painter, const QRect &place, const AgentProposal &proposal) const
{
    const QString failed = m_model.failureOf(proposal);
    painter.setFont(sizedFont(0.92));
    painter.setPen(color(failed.isEmpty() ? Token::Secondary : Token::Danger));
    paintLines(painter, place, failed.isEmpty() ? proposal.reason : QStringLiteral("Fehlgeschlagen: ") + failed);
}

void ProposalRow::paintAction(QPainter &painter, const QRect &place, const QString &symbol, bool hovered) const
{
    if (hovered) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(color(Token::Line));
        painter.drawRoundedRect(place.adjusted(2, 2, -2, -2), 8, 8);
    }
    const int side = scaled(17);
    const QRectF inner(place.center().x() - side / 2.0 + 0.5, place.center().y() - side / 2.0 + 0.5, side, side);
    Symbols::paint(painter, inner, symbol, color(hovered ? Token::Text : Token::Secondary));
}

} // namespace brellin
