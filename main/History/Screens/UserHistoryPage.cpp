#include "History/Screens/UserHistoryPage.h"

#include "Base/German.h"
#include "History/HistoryTexts.h"
#include "History/Screens/HistoryRows.h"
#include "Look/BusyBar.h"
#include "Look/Buttons.h"
#include "Look/Labels.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"
#include "Look/YesNoSheet.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QShortcut>
#include <QShowEvent>
#include <QStackedLayout>

#include <algorithm>

namespace brellin {

namespace {

constexpr int typingPause = 250;
constexpr std::size_t mostFolders = 30;
constexpr std::array filterKinds{HistoryKind::Copied,   HistoryKind::Moved, HistoryKind::Renamed,
                                 HistoryKind::Trashed,  HistoryKind::Made,  HistoryKind::Unpacked,
                                 HistoryKind::Permitted};

} // namespace

UserHistoryPage::UserHistoryPage(HistoryList &history, const KnownFolders &folders, const Clock &clock, QWidget *parent)
    : QWidget(parent)
    , m_history(history)
    , m_folders(folders)
    , m_clock(clock)
{
    setObjectName(QStringLiteral("userHistoryPage"));
    setAccessibleName(QStringLiteral("Verlauf"));
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    buildHead();
    m_busy = makeBusyBar(QStringLiteral("Der Verlauf wird gelesen"), QStringLiteral("historyBusy"),
                         WhenHidden::KeepsRoom, this);
    column->addWidget(m_busy);
    m_rows = new HistoryRows(m_folders, this);
    m_empty = new EmptyState(QStringLiteral("history"), {}, {}, this);
    m_empty->setObjectName(QStringLiteral("historyEmpty"));
    m_stack = new QStackedLayout;
    m_stack->addWidget(m_rows);
    m_stack->addWidget(m_empty);
    column->addLayout(m_stack, 1);
    buildFoot();
    connectAll();
    setFocusProxy(m_name);
    refreshRows();
}

void UserHistoryPage::buildHead()
{
    auto *const head = new QHBoxLayout;
    head->setContentsMargins(scaled(14), scaled(12), scaled(14), scaled(10));
    head->setSpacing(scaled(8));
    head->addWidget(makeTitle(QStringLiteral("Verlauf"), this));
    head->addStretch(1);
    m_name = new QLineEdit(this);
    m_name->setObjectName(QStringLiteral("historyName"));
    m_name->setAccessibleName(QStringLiteral("Wo ist …? Name einer Datei"));
    m_name->setPlaceholderText(QStringLiteral("Wo ist …? Name eingeben"));
    m_name->setClearButtonEnabled(true);
    m_name->setMinimumWidth(scaled(200));
    m_name->setMaximumWidth(scaled(340));
    m_name->addAction(Symbols::icon(QStringLiteral("magnifyingglass"), Token::Tertiary), QLineEdit::LeadingPosition);
    head->addWidget(m_name, 2);
    m_kind = new QComboBox(this);
    m_kind->setObjectName(QStringLiteral("historyKind"));
    m_kind->setAccessibleName(QStringLiteral("Art"));
    m_kind->addItem(QStringLiteral("Alle Arten"));
    for (const HistoryKind kind : filterKinds)
        m_kind->addItem(historyTexts::title(kind));
    head->addWidget(m_kind);
    m_folder = new QComboBox(this);
    m_folder->setObjectName(QStringLiteral("historyFolder"));
    m_folder->setAccessibleName(QStringLiteral("Ordner"));
    m_folder->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_folder->setMinimumContentsLength(16);
    m_folder->addItem(QStringLiteral("Alle Ordner"));
    head->addWidget(m_folder);
    static_cast<QVBoxLayout *>(layout())->addLayout(head);
    m_damage = makeSecondary({}, this);
    m_damage->setObjectName(QStringLiteral("historyDamage"));
    m_damage->setToken(Token::Warning);
    m_damage->setContentsMargins(scaled(14), 0, scaled(14), scaled(8));
    m_damage->hide();
    layout()->addWidget(m_damage);
}

void UserHistoryPage::buildFoot()
{
    m_outcome = makeSecondary({}, this);
    m_outcome->setObjectName(QStringLiteral("historyOutcome"));
    m_outcome->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_outcome->setContentsMargins(scaled(14), scaled(8), scaled(14), 0);
    m_outcome->hide();
    layout()->addWidget(m_outcome);
    auto *const foot = new QHBoxLayout;
    foot->setContentsMargins(scaled(14), scaled(10), scaled(14), scaled(12));
    foot->setSpacing(scaled(8));
    m_on = new QCheckBox(QStringLiteral("Verlauf führen"), this);
    m_on->setObjectName(QStringLiteral("historyOn"));
    m_on->setToolTip(QStringLiteral("90 Tage lang, nur auf diesem Rechner und nur für dich lesbar"));
    m_clear = makeButton(QStringLiteral("Verlauf leeren …"), ButtonKind::Usual, QStringLiteral("historyClear"), this);
    m_show = makeButton(QStringLiteral("Im Ordner zeigen"), ButtonKind::Usual, QStringLiteral("historyShow"), this);
    m_back = makeButton(QStringLiteral("Rückgängig"), ButtonKind::Primary, QStringLiteral("historyBack"), this,
                        QStringLiteral("undo-2"));
    foot->addWidget(m_on);
    foot->addWidget(m_clear);
    foot->addStretch(1);
    foot->addWidget(m_show);
    foot->addWidget(m_back);
    static_cast<QVBoxLayout *>(layout())->addLayout(foot);
}

void UserHistoryPage::connectAll()
{
    m_typing.setSingleShot(true);
    m_typing.setInterval(typingPause);
    connect(&m_typing, &QTimer::timeout, this, [this] { m_history.search(m_name->text()); });
    connect(m_name, &QLineEdit::textChanged, &m_typing, qOverload<>(&QTimer::start));
    connect(m_name, &QLineEdit::returnPressed, m_rows, [this] { m_rows->setFocus(); });
    connect(m_kind, &QComboBox::currentIndexChanged, this, &UserHistoryPage::refreshRows);
    connect(m_folder, &QComboBox::currentIndexChanged, this, &UserHistoryPage::refreshRows);
    connect(m_rows, &QTreeWidget::currentItemChanged, this, &UserHistoryPage::refreshState);
    connect(m_rows, &QTreeWidget::itemActivated, this, &UserHistoryPage::showCurrent);
    connect(m_rows, &QWidget::customContextMenuRequested, this, &UserHistoryPage::showMenu);
    connect(m_show, &QPushButton::clicked, this, &UserHistoryPage::showCurrent);
    connect(m_back, &QPushButton::clicked, this, &UserHistoryPage::takeCurrentBack);
    connect(m_clear, &QPushButton::clicked, this, &UserHistoryPage::askToClear);
    connect(m_on, &QCheckBox::clicked, this, [this](bool on) {
        m_history.setOn(on);
        showEmpty();
    });
    auto *const stop = new QShortcut(Qt::Key_Escape, this, [this] { m_name->clear(); });
    stop->setContext(Qt::WidgetWithChildrenShortcut);
    auto *const find = new QShortcut(QKeySequence::Find, this, [this] { m_name->setFocus(Qt::ShortcutFocusReason); });
    find->setContext(Qt::WidgetWithChildrenShortcut);
    m_history.steps.observe(this, [this](const auto &) {
        offerFolders();
        refreshRows();
    });
    m_history.changes.observe(this, [this](int) {
        if (isVisible())
            m_history.reload();
    });
    m_history.trails.observe(this, [this](const auto &) { refreshRows(); });
    m_history.searched.observe(this, [this](const QString &name) {
        // The page of another window may have searched.
        const QSignalBlocker quiet(m_name);
        if (!m_name->hasFocus() && !m_typing.isActive() && m_name->text().trimmed() != name)
            m_name->setText(name);
        refreshRows();
    });
    for (Published<bool> *const one : {&m_history.loading, &m_history.searching, &m_history.takingBack})
        one->observe(this, [this](bool) { refreshState(); });
    m_history.damage.observe(this, [this](const auto &) { refreshState(); });
    m_history.status.observe(this, [this](const auto &) {
        m_told.clear();
        refreshState();
    });
}

/// Another program may have done something meanwhile.
bool UserHistoryPage::event(QEvent *event)
{
    if (event->type() == QEvent::WindowActivate && isVisible())
        m_history.reload();
    return QWidget::event(event);
}

void UserHistoryPage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (event->spontaneous())
        return;
    m_on->setChecked(m_history.on());
    m_name->setText(m_history.searched.get());
    m_history.reload();
}

void UserHistoryPage::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), color(Token::Window));
    const QRect list = m_stack->currentWidget()->geometry();
    painter.fillRect(list, color(Token::Content));
    painter.fillRect(QRect(0, list.top() - 1, width(), 1), color(Token::Line));
    painter.fillRect(QRect(0, list.bottom() + 1, width(), 1), color(Token::Line));
}

HistoryFilter UserHistoryPage::filter() const
{
    HistoryFilter wanted;
    if (const int kind = m_kind->currentIndex(); kind > 0)
        wanted.kind = filterKinds.at(static_cast<std::size_t>(kind - 1));
    if (const int folder = m_folder->currentIndex(); folder > 0)
        wanted.folder = m_offered[static_cast<std::size_t>(folder - 1)];
    return wanted;
}

/// The folders of the newest steps.
void UserHistoryPage::offerFolders()
{
    const Location chosen = filter().folder;
    m_offered.clear();
    const auto offer = [this](const Location &folder) {
        if (!folder.empty() && m_offered.size() < mostFolders &&
            std::ranges::find(m_offered, folder) == m_offered.end() &&
            !isAtOrBelow(folder, m_folders.trash.parent_path()))
            m_offered.push_back(folder);
    };
    offer(chosen);
    for (const HistoryStep &step : m_history.steps.get()) {
        for (const HistoryEntry &entry : step.entries) {
            offer(entry.entry.from.parent_path());
            offer(entry.entry.to.parent_path());
        }
    }
    std::ranges::sort(m_offered);
    const QSignalBlocker quiet(m_folder);
    m_folder->clear();
    m_folder->addItem(QStringLiteral("Alle Ordner"));
    for (const Location &folder : m_offered)
        m_folder->addItem(historyTexts::folderText(folder, m_folders));
    const auto place = std::ranges::find(m_offered, chosen);
    m_folder->setCurrentIndex(place == m_offered.end() ? 0 : static_cast<int>(place - m_offered.begin()) + 1);
}

void UserHistoryPage::refreshRows()
{
    if (m_history.searched.get().isEmpty())
        m_rows->showSteps(m_history.steps.get(), filter(), localDay(m_clock.now()));
    else
        m_rows->showTrails(m_history.trails.get(), filter(), m_clock.now());
    refreshState();
}

void UserHistoryPage::refreshState()
{
    m_busy->setVisible(m_history.loading.get() || m_history.searching.get() || m_history.takingBack.get());
    const std::optional<StoredCondition> &damage = m_history.damage.get();
    m_damage->setVisible(damage.has_value());
    if (damage)
        m_damage->setText(damage->text());
    showOutcome();
    const HistoryRow *const row = m_rows->current();
    m_show->setEnabled(row && !row->place.empty());
    const QString why = whyNotBack();
    m_back->setEnabled(why.isEmpty());
    m_back->setToolTip(why.isEmpty() ? QStringLiteral("Macht den ganzen Schritt rückgängig") : why);
    showEmpty();
}

void UserHistoryPage::showOutcome()
{
    const bool own = m_told.isEmpty();
    const QStringList lines =
        own ? QStringList(m_history.status.get()) + m_history.failures.get() : QStringList(m_told);
    m_outcome->setText(lines.join(u'\n'));
    m_outcome->setToken(!own ? Token::Secondary : m_history.failures.get().isEmpty() ? Token::Success : Token::Danger);
    m_outcome->setVisible(!lines.front().isEmpty());
}

void UserHistoryPage::tell(const QString &text)
{
    if (!isVisible())
        return;
    m_told = text;
    showOutcome();
}

QString UserHistoryPage::whyNotBack() const
{
    const HistoryRow *const row = m_rows->current();
    if (!row || row->step.isNull())
        return QStringLiteral("Wähle einen Schritt aus.");
    if (row->takenBack)
        return QStringLiteral("Dieser Schritt ist schon rückgängig gemacht.");
    return m_history.takingBack.get() ? QStringLiteral("Ein Schritt wird gerade rückgängig gemacht.") : QString();
}

void UserHistoryPage::showEmpty()
{
    const bool filtered = !m_history.searched.get().isEmpty() || filter() != HistoryFilter();
    if (m_rows->isEmpty() && filtered)
        m_empty->setTexts(QStringLiteral("Nichts gefunden"),
                          QStringLiteral("Davon steht nichts im Verlauf der letzten 90 Tage."));
    else if (m_rows->isEmpty() && !m_on->isChecked() && isVisible())
        m_empty->setTexts(QStringLiteral("Der Verlauf wird nicht geführt"),
                          QStringLiteral("Schalte „Verlauf führen“ ein, dann steht hier, was du mit Dateien tust."));
    else if (m_rows->isEmpty())
        m_empty->setTexts(m_history.loading.get() ? QStringLiteral("Der Verlauf wird gelesen …")
                                                  : QStringLiteral("Noch nichts geschehen"),
                          QStringLiteral("Hier steht, was du kopierst, verschiebst, umbenennst oder in den Papierkorb "
                                         "legst – und lässt sich rückgängig machen."));
    m_stack->setCurrentWidget(m_rows->isEmpty() ? static_cast<QWidget *>(m_empty) : m_rows);
    update();
}

void UserHistoryPage::showCurrent()
{
    if (const HistoryRow *const row = m_rows->current(); row && !row->place.empty())
        Q_EMIT showRequested(Location(row->place));
}

void UserHistoryPage::takeCurrentBack()
{
    const HistoryRow *const row = m_rows->current();
    if (!whyNotBack().isEmpty())
        return;
    // The button is disabled meanwhile and would pass the focus on to anything.
    m_rows->setFocus();
    if (row->by == HistoryStep::By::Agent)
        Q_EMIT undoRunRequested(QUuid(row->step));
    else
        m_history.takeBack(row->step);
}

void UserHistoryPage::askToClear()
{
    auto *const question = new YesNoSheet(
        QStringLiteral("Verlauf leeren?"),
        QStringLiteral(
            "Was du mit Dateien getan hast, wird vergessen und lässt sich hier nicht mehr rückgängig machen. "
            "An den Dateien ändert sich nichts. Die Läufe des Aufräum-Agenten bleiben."),
        QStringLiteral("Verlauf leeren"), ButtonKind::Danger, window());
    question->setObjectName(QStringLiteral("clearQuestion"));
    connect(question, &YesNoSheet::accepted, this, [this] { m_history.clear(); });
    question->open();
}

void UserHistoryPage::showMenu(QPoint at)
{
    if (!m_rows->current())
        return;
    auto *const menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("historyMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (QPushButton *const button : {m_show, m_back})
        menu->addAction(button->text(), button, &QPushButton::click)->setEnabled(button->isEnabled());
    menu->popup(m_rows->viewport()->mapToGlobal(at));
}

} // namespace brellin
