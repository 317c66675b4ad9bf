#include "Features/Screens/PreviewTagRow.h"

#include "Features/FileTags.h"
#include "Look/Theme.h"

#include <QHBoxLayout>
#include <QPainter>

namespace brellin {

namespace {

constexpr double ringSide = 15;
constexpr double gap = 7;

} // namespace

PreviewTagRing::PreviewTagRing(const QString &tag, QColor color, QWidget *parent)
    : QAbstractButton(parent)
    , m_color(color)
{
    setObjectName(u"vorschau.markierung."_qs + tag);
    setAccessibleName(u"Markierung „%1“"_qs.arg(tag));
    setToolTip(tag);
    setCheckable(true);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize PreviewTagRing::sizeHint() const
{
    const int side = scaled(ringSide + 2);
    return {side, side};
}

void PreviewTagRing::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double line = scaled(2);
    // Shrinks when focused, to make room for the focus ring.
    const double inset = line / 2 + (hasFocus() ? 4 : 1);
    painter.setPen(QPen(m_color, line));
    if (isChecked())
        painter.setBrush(m_color);
    else if (underMouse() || isDown())
        painter.setBrush(QColor(m_color.red(), m_color.green(), m_color.blue(), isDown() ? 140 : 70));
    painter.drawEllipse(QRectF(rect()).adjusted(inset, inset, -inset, -inset));
    if (!hasFocus())
        return;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color(Token::Accent), 2));
    painter.drawEllipse(QRectF(rect()).adjusted(1, 1, -1, -1));
}

void PreviewTagRing::enterEvent(QEnterEvent *event)
{
    QAbstractButton::enterEvent(event);
    update();
}

void PreviewTagRing::leaveEvent(QEvent *event)
{
    QAbstractButton::leaveEvent(event);
    update();
}

PreviewTagRow::PreviewTagRow(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("vorschau.markierungen"));
    setAccessibleName(QStringLiteral("Markierungen"));
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(scaled(gap - 2));
    for (const FileTags::PaletteTag &tag : FileTags::all) {
        const QString name = tag.name.toString();
        auto *const ring = new PreviewTagRing(name, QColor::fromRgb(tag.color), this);
        connect(ring, &QAbstractButton::clicked, this, [this, ring, name](bool checked) {
            // Reverts the click; the ring is filled once the tag has been written.
            ring->setChecked(!checked);
            Q_EMIT toggled(name);
        });
        row->addWidget(ring);
        m_rings.push_back(ring);
    }
    row->addStretch(1);
}

void PreviewTagRow::setTags(const QStringList &tags)
{
    for (std::size_t i = 0; i < m_rings.size(); ++i)
        m_rings[i]->setChecked(tags.contains(FileTags::all[i].name.toString()));
}

} // namespace brellin
