#include "FileOperations/Screens/RightsSheet.h"

#include "Base/AbandonablePool.h"
#include "Base/German.h"
#include "FileOperations/OperationTexts.h"
#include "Look/Buttons.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>

#include <algorithm>

namespace brellin {

namespace {

const std::array<QString, 3> classTitles{QStringLiteral("Eigentümer"), QStringLiteral("Gruppe"),
                                         QStringLiteral("Andere")};
const std::array<QString, 3> rightTitles{QStringLiteral("lesen"), QStringLiteral("schreiben"),
                                         QStringLiteral("ausführen")};

std::uint32_t bitAt(std::size_t place)
{
    return 0400U >> place;
}

/// Whether all, none or some have it.
template <class Has>
Qt::CheckState stateOf(const std::vector<ExaminedRights> &entries, Has has)
{
    const auto count = std::ranges::count_if(entries, has);
    if (count == 0)
        return Qt::Unchecked;
    return count == std::ssize(entries) ? Qt::Checked : Qt::PartiallyChecked;
}

/// The present one of all entries; none if they differ.
template <class Number>
std::optional<std::uint32_t> shared(const std::vector<ExaminedRights> &entries, Number number)
{
    if (entries.empty())
        return std::nullopt;
    const std::uint32_t first = std::invoke(number, entries.front().rights);
    const bool alike = std::ranges::all_of(
        entries, [&](const ExaminedRights &one) { return std::invoke(number, one.rights) == first; });
    return alike ? std::optional(first) : std::nullopt;
}

void fillPeople(QComboBox &box, const std::vector<NamedId> &people, std::optional<std::uint32_t> now)
{
    box.clear();
    if (!now)
        box.addItem(QStringLiteral("verschieden"));
    for (const NamedId &one : people)
        box.addItem(one.name, one.id);
    if (now && box.findData(*now) < 0)
        box.addItem(QString::number(*now), *now);
    box.setCurrentIndex(now ? box.findData(*now) : 0);
    box.setEnabled(!people.empty());
}

} // namespace

RightsSheet::RightsSheet(std::vector<Location> entries, std::function<bool(const Location &)> mayChange,
                         QWidget *window)
    : SheetFrame(QStringLiteral("Rechte von %1").arg(operationTexts::named(entries)), {}, {520, 0}, window)
    , m_entries(std::move(entries))
    , m_mayChange(std::move(mayChange))
    , m_pool(abandonablePool())
{
    setObjectName(QStringLiteral("rightsSheet"));
    buildGrid();
    buildOwners();
    buildEnd();
    read();
}

RightsSheet::~RightsSheet() = default;

void RightsSheet::buildGrid()
{
    auto *const grid = new QGridLayout;
    grid->setHorizontalSpacing(scaled(18));
    grid->setVerticalSpacing(scaled(6));
    for (std::size_t row = 0; row < classTitles.size(); ++row) {
        const int line = static_cast<int>(row);
        grid->addWidget(makeBody(classTitles.at(row), this), line, 0);
        for (std::size_t column = 0; column < rightTitles.size(); ++column) {
            const std::size_t bit = row * 3 + column;
            auto *const box = new QCheckBox(rightTitles.at(column), this);
            box->setObjectName(QStringLiteral("right%1").arg(bit));
            box->setAccessibleName(classTitles.at(row) + QStringLiteral(": ") + rightTitles.at(column));
            box->setEnabled(false);
            connect(box, &QCheckBox::clicked, this, [this, bit](bool on) { touch(bit, on); });
            grid->addWidget(box, line, static_cast<int>(column) + 1);
            m_bits.at(bit) = box;
        }
    }
    content()->addLayout(grid);
}

void RightsSheet::buildOwners()
{
    m_owners = new QWidget(this);
    auto *const row = new QHBoxLayout(m_owners);
    row->setContentsMargins(0, scaled(8), 0, 0);
    const auto add = [this, row](const QString &title, const QString &name) {
        auto *const box = new QComboBox(m_owners);
        box->setObjectName(name);
        box->setAccessibleName(title);
        box->setEnabled(false);
        row->addWidget(makeBody(title, m_owners));
        row->addWidget(box, 1);
        return box;
    };
    m_owner = add(QStringLiteral("Gehört"), QStringLiteral("rightsOwner"));
    m_group = add(QStringLiteral("Gruppe"), QStringLiteral("rightsGroup"));
    content()->addWidget(m_owners);
    connect(m_owner, &QComboBox::activated, this, [this] {
        m_wish.owner = m_owner->currentData().isValid() ? std::optional(m_owner->currentData().toUInt()) : std::nullopt;
        plan();
    });
    connect(m_group, &QComboBox::activated, this, [this] {
        m_wish.group = m_group->currentData().isValid() ? std::optional(m_group->currentData().toUInt()) : std::nullopt;
        plan();
    });
}

void RightsSheet::buildEnd()
{
    m_inside = new QCheckBox(QStringLiteral("Auch für alles darin"), this);
    m_inside->setObjectName(QStringLiteral("rightsInside"));
    m_inside->setToolTip(QStringLiteral("„Ausführen“ bekommen darin nur Ordner und Programme."));
    m_inside->hide();
    m_summary = makeBody(QStringLiteral("Wird gelesen …"), this);
    m_summary->setObjectName(QStringLiteral("rightsSummary"));
    m_notes = makeSecondary({}, this);
    m_notes->setObjectName(QStringLiteral("rightsNotes"));
    content()->addWidget(m_inside);
    content()->addSpacing(scaled(6));
    content()->addWidget(m_summary);
    content()->addWidget(m_notes);
    QPushButton *const cancel =
        makeButton(QStringLiteral("Abbrechen"), ButtonKind::Usual, QStringLiteral("cancel"), this);
    m_accept = makeButton(QStringLiteral("Ändern"), ButtonKind::Primary, QStringLiteral("accept"), this);
    m_accept->setEnabled(false);
    buttons()->addWidget(cancel);
    buttons()->addWidget(m_accept);
    connect(m_inside, &QCheckBox::clicked, this, [this](bool on) {
        m_wish.inside = on;
        plan();
    });
    connect(cancel, &QPushButton::clicked, this, &RightsSheet::close);
    connect(m_accept, &QPushButton::clicked, this, &RightsSheet::accept);
}

void RightsSheet::read()
{
    m_reading.start(
        *m_pool,
        [entries = m_entries, mayChange = m_mayChange](JobControl &control) {
            return Read{planRights(entries, {}, mayChange, control), RightsPeople::ofThisProcess()};
        },
        [this](const Read &read) { showRights(read); });
}

void RightsSheet::showRights(const Read &read)
{
    const std::vector<ExaminedRights> &chosen = read.plan.chosen;
    const auto folder = [](const ExaminedRights &one) { return one.attributes.isFolder(); };
    const bool onlyFolders = std::ranges::all_of(chosen, folder);
    for (std::size_t bit = 0; bit < bitCount; ++bit) {
        QCheckBox &box = *m_bits.at(bit);
        const auto has = [bit](const ExaminedRights &one) { return (one.rights.mode & bitAt(bit)) != 0; };
        box.setTristate(stateOf(chosen, has) == Qt::PartiallyChecked);
        box.setCheckState(stateOf(chosen, has));
        box.setEnabled(!chosen.empty());
        if (bit % 3 == 2 && onlyFolders)
            box.setText(QStringLiteral("öffnen"));
    }
    m_inside->setVisible(std::ranges::any_of(chosen, folder));
    showPeople(read);
    showPlan(read.plan);
    if (!chosen.empty() && m_accept->hasFocus())
        m_bits.front()->setFocus();
}

void RightsSheet::showPeople(const Read &read)
{
    fillPeople(*m_owner, read.people.owners, shared(read.plan.chosen, &EntryRights::owner));
    fillPeople(*m_group, read.people.groups, shared(read.plan.chosen, &EntryRights::group));
}

/// A box that stood for some of the entries stands for all once it is clicked.
void RightsSheet::touch(std::size_t bit, bool on)
{
    m_bits.at(bit)->setTristate(false);
    m_bits.at(bit)->setChecked(on);
    (on ? m_wish.set : m_wish.clear) |= bitAt(bit);
    (on ? m_wish.clear : m_wish.set) &= ~bitAt(bit);
    plan();
}

void RightsSheet::plan()
{
    ++m_changes;
    m_summary->setText(QStringLiteral("Wird gelesen …"));
    m_accept->setEnabled(false);
    m_planning.cancel();
    startPlan();
}

/// Does nothing while a plan is being made; the end of that one starts the next.
void RightsSheet::startPlan()
{
    m_planning.start(
        *m_pool,
        [entries = m_entries, wish = m_wish, mayChange = m_mayChange](JobControl &control) {
            return planRights(entries, wish, mayChange, control);
        },
        [this, change = m_changes](const RightsPlan &plan) {
            if (change == m_changes)
                showPlan(plan);
            else
                startPlan();
        });
}

void RightsSheet::showPlan(const RightsPlan &plan)
{
    const auto count = static_cast<qint64>(plan.entries.size());
    m_summary->setText(count == 0 ? QStringLiteral("Es ändert sich nichts.")
                                  : QStringLiteral("Geändert werden die Rechte von %1.")
                                        .arg(counted(count, QStringLiteral("Element"), QStringLiteral("Elementen"))));
    QStringList notes = rightsNotes(plan) + linesOf(plan.failures);
    constexpr qsizetype most = 8;
    if (notes.size() > most)
        notes = notes.first(most) << QStringLiteral("… und %1 weitere").arg(notes.size() - most);
    m_notes->setText(notes.join(u'\n'));
    m_notes->setVisible(!notes.isEmpty());
    m_accept->setEnabled(count > 0);
}

void RightsSheet::accept()
{
    const RightsWish wish = m_wish;
    close();
    Q_EMIT accepted(wish);
}

} // namespace brellin
