#include "Look/Symbols.h"

#include "Look/Theme.h"

#include <QFile>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <array>

namespace brellin::Symbols {

namespace {

/// Symbol names in records and stored settings, with the name in this set.
constexpr std::array<std::pair<const char16_t *, const char16_t *>, 40> recordNames{{
    {u"wand.and.sparkles", u"wand-sparkles"},
    {u"photo.on.rectangle.angled", u"images"},
    {u"doc.text.magnifyingglass", u"file-search"},
    {u"folder.badge.gearshape", u"folder-cog"},
    {u"clock.arrow.circlepath", u"history"},
    {u"book", u"book-open"},
    {u"person.crop.square", u"square-user"},
    {u"menubar.dock.rectangle", u"monitor"},
    {u"arrow.down.circle", u"circle-arrow-down"},
    {u"square.grid.3x3", u"layout-grid"},
    {u"checkmark.circle.fill", u"circle-check"},
    {u"icloud", u"cloud"},
    {u"cloud", u"cloud"},
    {u"folder", u"folder"},
    {u"house", u"house"},
    {u"star", u"star"},
    {u"heart", u"heart"},
    {u"briefcase", u"briefcase"},
    {u"graduationcap", u"graduation-cap"},
    {u"gamecontroller", u"gamepad-2"},
    {u"chevron.left.forwardslash.chevron.right", u"code"},
    {u"airplane", u"plane"},
    {u"map", u"map"},
    {u"person.2", u"users"},
    {u"envelope", u"mail"},
    {u"film", u"film"},
    {u"music.note", u"music"},
    {u"photo", u"image"},
    {u"doc.text", u"file-text"},
    {u"archivebox", u"archive"},
    {u"externaldrive", u"hard-drive"},
    {u"network", u"server"},
    {u"trash", u"trash-2"},
    {u"tag", u"tag"},
    {u"gearshape", u"settings"},
    {u"magnifyingglass", u"search"},
    {u"camera", u"camera"},
    {u"creditcard", u"banknote"},
    {u"hammer", u"hammer"},
    {u"bookmark", u"bookmark"},
}};

using Drawings = QHash<QString, QByteArray>;

/// The drawings by name in this set.
const Drawings &drawings()
{
    static const Drawings read = [] {
        Drawings found;
        QFile file(QStringLiteral(":/look/symbols.txt"));
        if (!file.open(QIODevice::ReadOnly))
            return found;
        while (!file.atEnd()) {
            const QByteArray line = file.readLine().trimmed();
            const qsizetype blank = line.indexOf(' ');
            if (blank > 0 && !line.startsWith('#'))
                found.insert(QString::fromUtf8(line.left(blank)), line.mid(blank + 1));
        }
        return found;
    }();
    return read;
}

QString ownName(const QString &name)
{
    for (const auto &[record, own] : recordNames)
        if (name == QStringView(record))
            return QString::fromUtf16(own);
    return drawings().contains(name) ? name : QStringLiteral("folder");
}

/// The SVG of a symbol: strokes of 1.75 in a 24-unit square.
QByteArray document(const QString &name, const QColor &color)
{
    return R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 24 24" fill="none" stroke=")" +
           color.name().toUtf8() + R"(" stroke-opacity=")" + QByteArray::number(color.alphaF()) +
           R"(" stroke-width="1.75" stroke-linecap="round" stroke-linejoin="round">)" +
           drawings().value(ownName(name)) + "</svg>";
}

class SymbolEngine : public QIconEngine {
public:
    SymbolEngine(QString name, Token normal, Token on) : m_name(std::move(name)), m_normal(normal), m_on(on) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        Symbols::paint(*painter, rect, m_name, colorFor(mode, state));
    }
    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state, qreal scale) override
    {
        // `size` is in device pixels. In a wide rectangle the symbol goes to the left, which keeps a distance to text.
        QPixmap drawn =
            Symbols::pixmap(m_name, std::min(size.width(), size.height()) / scale, colorFor(mode, state), scale);
        if (size.width() <= size.height())
            return drawn;
        QPixmap wide(size);
        wide.setDevicePixelRatio(scale);
        wide.fill(Qt::transparent);
        QPainter(&wide).drawPixmap(0, 0, drawn);
        return wide;
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return scaledPixmap(size, mode, state, 1);
    }
    QIconEngine *clone() const override { return new SymbolEngine(m_name, m_normal, m_on); }

private:
    QColor colorFor(QIcon::Mode mode, QIcon::State state) const
    {
        if (mode == QIcon::Disabled)
            return faded(Token::Tertiary, 0.55);
        return color(state == QIcon::On ? m_on : m_normal);
    }

    QString m_name;
    Token m_normal;
    Token m_on;
};

} // namespace

bool knows(const QString &name)
{
    return drawings().contains(name) || ownName(name) != u"folder" || name == u"folder";
}

const QStringList &choice()
{
    static const QStringList names = [] {
        QStringList list;
        for (const auto &[record, own] : recordNames)
            if (const QString name = QString::fromUtf16(record); name != u"icloud" && name != u"checkmark.circle.fill")
                list.append(name);
        return list;
    }();
    return names;
}

QPixmap pixmap(const QString &name, double side, const QColor &color, double pixelsPerPoint)
{
    const QString key =
        QStringLiteral("symbol:%1:%2:%3:%4").arg(name, color.name(QColor::HexArgb)).arg(side).arg(pixelsPerPoint);
    QPixmap made;
    if (QPixmapCache::find(key, &made))
        return made;
    const int pixels = std::max(1, qRound(side * pixelsPerPoint));
    made = QPixmap(pixels, pixels);
    made.fill(Qt::transparent);
    QPainter painter(&made);
    QSvgRenderer(document(name, color)).render(&painter, QRectF(0, 0, pixels, pixels));
    painter.end();
    made.setDevicePixelRatio(pixelsPerPoint);
    QPixmapCache::insert(key, made);
    return made;
}

QIcon icon(const QString &name, Token normal, Token on)
{
    return QIcon(new SymbolEngine(name, normal, on));
}

void paint(QPainter &painter, const QRectF &place, const QString &name, const QColor &color)
{
    const double side = std::min(place.width(), place.height());
    const QPixmap drawn = pixmap(name, side, color, painter.device()->devicePixelRatioF());
    const QPointF corner = place.center() - QPointF(side / 2, side / 2);
    painter.drawPixmap(QPointF(std::round(corner.x()), std::round(corner.y())), drawn);
}

} // namespace brellin::Symbols
