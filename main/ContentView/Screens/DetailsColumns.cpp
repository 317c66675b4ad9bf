#include "ContentView/Screens/DetailsColumns.h"

#include "ContentView/Screens/ItemTexts.h"
#include "Look/Theme.h"
#include "System/PlainSetting.h"

#include <QHeaderView>
#include <QMenu>

#include <algorithm>

namespace brellin {

namespace {

const QString widthsKey = QStringLiteral("detailsColumns");
const QString chosenKey = QStringLiteral("detailsShown");

constexpr std::array<int, columnCount> usualWidths{300, 90, 140, 160, 100, 200, 300, 140, 140, 110, 140};
const QString usualColumns = QStringLiteral("1,2,3,4");
/// Room for the name beside one column, and beside several.
constexpr int leastNameWidth = 170;
constexpr int usualNameWidth = 230;

int sectionOf(Column column)
{
    return static_cast<int>(column);
}

bool holds(const std::vector<Column> &columns, Column one)
{
    return std::ranges::find(columns, one) != columns.end();
}

int unscaled(int width)
{
    return qRound(width * 1000.0 / scaled(1000));
}

} // namespace

DetailsColumns::DetailsColumns(QHeaderView &header, UserDefaults &defaults)
    : QObject(&header)
    , m_header(header)
    , m_defaults(defaults)
    , m_widths(usualWidths)
{
    m_header.moveSection(m_header.visualIndex(sectionOf(Column::Folder)), 1);
    m_header.moveSection(m_header.visualIndex(sectionOf(Column::Passage)), 1);
    readWidths();
    readChosen();
    m_saveSoon.setSingleShot(true);
    m_saveSoon.setInterval(500);
    connect(&m_saveSoon, &QTimer::timeout, this, &DetailsColumns::saveWidths);
    connect(&header, &QHeaderView::sectionMoved, &m_saveSoon, QOverload<>::of(&QTimer::start));
    connect(&header, &QHeaderView::sectionResized, this,
            [this](int section, int, int width) { resized(section, width); });
}

/// The setting holds "column:width", separated by commas, in display order.
void DetailsColumns::readWidths()
{
    int place = 0;
    for (const QString &one :
         plainSetting(m_defaults, widthsKey, QString()).split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const int section = one.section(QLatin1Char(':'), 0, 0).toInt();
        const int width = one.section(QLatin1Char(':'), 1, 1).toInt();
        if (section < 0 || section >= columnCount || width < 40 || width > 2000 || place >= columnCount)
            break;
        m_header.moveSection(m_header.visualIndex(section), place++);
        m_widths.at(static_cast<std::size_t>(section)) = width;
    }
    for (int section = 1; section < columnCount; ++section)
        m_header.resizeSection(section, scaled(m_widths.at(static_cast<std::size_t>(section))));
}

/// The setting holds the columns' numbers, the last chosen first.
void DetailsColumns::readChosen()
{
    m_chosen.clear();
    for (const QString &one : plainSetting(m_defaults, chosenKey, usualColumns).split(QLatin1Char(','))) {
        const int section = one.toInt();
        const auto column = static_cast<Column>(section);
        if (section > 0 && section < columnCount && !holds(m_chosen, column))
            m_chosen.push_back(column);
    }
}

void DetailsColumns::resized(int section, int width)
{
    if (m_fitting || width <= 0 || section == sectionOf(Column::Name))
        return;
    m_widths.at(static_cast<std::size_t>(section)) = unscaled(width);
    m_saveSoon.start();
}

void DetailsColumns::saveWidths()
{
    QStringList stored;
    for (int place = 0; place < columnCount; ++place) {
        const int section = m_header.logicalIndex(place);
        stored.append(QStringLiteral("%1:%2").arg(section).arg(m_widths.at(static_cast<std::size_t>(section))));
    }
    store(widthsKey, stored.join(QLatin1Char(',')));
}

void DetailsColumns::store(const QString &key, const QVariant &value)
{
    if (const Result<void> kept = m_defaults.setValue(key, value); !kept)
        Q_EMIT notStored(kept.error().message);
}

void DetailsColumns::fit(int width, const std::vector<Column> &always)
{
    m_width = width;
    m_always = always;
    show();
}

void DetailsColumns::show()
{
    std::vector<Column> wanted = m_always;
    std::ranges::copy_if(m_chosen, std::back_inserter(wanted), [this](Column one) { return !holds(m_always, one); });
    m_fitting = true;
    int used = 0;
    for (int section = 1; section < columnCount; ++section)
        if (!holds(wanted, static_cast<Column>(section)))
            m_header.hideSection(section);
    for (const Column column : wanted) {
        const int name = used == 0 || holds(m_always, column) ? leastNameWidth : usualNameWidth;
        const int width = m_widths.at(static_cast<std::size_t>(column));
        const bool fits = scaled(name + used + width) <= m_width;
        m_header.setSectionHidden(sectionOf(column), !fits);
        if (fits)
            m_header.resizeSection(sectionOf(column), scaled(width));
        used += width;
    }
    m_fitting = false;
}

bool DetailsColumns::showsDetails() const
{
    for (int section = 1; section < columnCount; ++section)
        if (const std::optional<SortKey> key = keyOf(static_cast<Column>(section));
            key && !m_header.isSectionHidden(section) && usesDetails({{*key}}))
            return true;
    return false;
}

void DetailsColumns::choose(Column column, bool wanted)
{
    std::erase(m_chosen, column);
    if (wanted)
        m_chosen.insert(m_chosen.begin(), column);
    QStringList stored;
    for (const Column one : m_chosen)
        stored << QString::number(sectionOf(one));
    show();
    store(chosenKey, stored.join(QLatin1Char(',')));
    Q_EMIT chosen();
}

void DetailsColumns::addTo(QMenu &menu)
{
    for (int section = 1; section < columnCount; ++section) {
        const auto column = static_cast<Column>(section);
        const bool always = holds(m_always, column);
        if (column == Column::Passage)
            continue;
        const bool wanted = always || holds(m_chosen, column);
        const QString title = titleOf(column);
        const bool hidden = wanted && m_header.isSectionHidden(section);
        QAction *const entry = menu.addAction(hidden ? title + QStringLiteral(" (kein Platz)") : title, this,
                                              [this, column, wanted] { choose(column, !wanted); });
        entry->setCheckable(true);
        entry->setChecked(wanted);
        entry->setEnabled(!always);
    }
}

} // namespace brellin
