#include "ContentView/Screens/AddressBar.h"

#include "ContentView/Listing.h"
#include "Look/Cards.h"
#include "Look/EntryIcons.h"
#include "Look/FieldReason.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QStackedLayout>

namespace brellin {

namespace {

/// Maximum number of folders in a crumb's menu.
constexpr std::size_t mostSiblings = 200;
/// Points beside the crumbs that remain for a click that edits the path.
constexpr int freeRoom = 24;

/// Double the "&" of a name, so that a menu shows it instead of making a mnemonic.
QString menuText(QString name)
{
    return name.replace(QLatin1Char('&'), QStringLiteral("&&"));
}

/// A crumb, or the separator that opens its menu.
class CrumbButton : public QAbstractButton {
public:
    CrumbButton(const QString &text, bool last, QWidget *parent) : QAbstractButton(parent), m_last(last)
    {
        setText(text);
        setAccessibleName(text);
        setFocusPolicy(Qt::TabFocus);
        setCursor(Qt::PointingHandCursor);
        setSizePolicy(last ? QSizePolicy::Preferred : QSizePolicy::Maximum, QSizePolicy::Preferred);
    }
    void setSymbol(const QString &symbol) { m_symbol = symbol; }
    /// Under a drag that can be dropped here.
    void setMarked(bool marked)
    {
        m_marked = marked;
        update();
    }
    void onMiddleClick(std::function<void()> act) { m_middleClicked = std::move(act); }

    QSize sizeHint() const override
    {
        const int symbol = m_symbol.isEmpty() ? 0 : scaled(16) + (text().isEmpty() ? 0 : scaled(5));
        return {QFontMetrics(usedFont()).horizontalAdvance(text()) + symbol + scaled(10), scaled(26)};
    }
    QSize minimumSizeHint() const override { return {std::min(sizeHint().width(), scaled(24)), scaled(26)}; }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        if (underMouse() || hasFocus() || m_marked) {
            painter.setPen(hasFocus() || m_marked ? QPen(color(Token::Accent), 2) : QPen(Qt::NoPen));
            painter.setBrush(color(Token::AccentSoft));
            painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 2, -0.5, -2), 5, 5);
        }
        const QColor ink = color(m_last ? Token::Text : Token::Secondary);
        QRectF place = QRectF(rect()).adjusted(scaled(3), 0, -scaled(3), 0);
        if (!m_symbol.isEmpty()) {
            Symbols::paint(painter, QRectF(place.left(), 0, scaled(15), height()), m_symbol, ink);
            place.setLeft(place.left() + scaled(15) + scaled(5));
        }
        painter.setFont(usedFont());
        painter.setPen(ink);
        painter.drawText(place, Qt::AlignVCenter | Qt::TextSingleLine,
                         painter.fontMetrics().elidedText(text(), Qt::ElideMiddle, static_cast<int>(place.width())));
    }
    void enterEvent(QEnterEvent *) override { update(); }
    void leaveEvent(QEvent *) override { update(); }
    void mouseReleaseEvent(QMouseEvent *event) override
    {
        if (event->button() == Qt::MiddleButton && m_middleClicked && rect().contains(event->position().toPoint()))
            m_middleClicked();
        else
            QAbstractButton::mouseReleaseEvent(event);
    }
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right)
            focusNextPrevChild(event->key() == Qt::Key_Right);
        else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
            click();
        else
            QAbstractButton::keyPressEvent(event);
    }

private:
    QFont usedFont() const { return sizedFont(1, m_last ? QFont::DemiBold : QFont::Normal); }

    bool m_last;
    bool m_marked = false;
    QString m_symbol;
    std::function<void()> m_middleClicked;
};

} // namespace

AddressBar::AddressBar(const KnownFolders &folders, MountWorkers &workers, const Volumes &volumes, QWidget *parent)
    : QWidget(parent)
    , m_folders(folders)
    , m_workers(workers)
    , m_volumes(volumes)
    , m_stack(new QStackedLayout(this))
    , m_steps(new QWidget(this))
    , m_row(new QHBoxLayout(m_steps))
    , m_field(new QLineEdit(this))
{
    setObjectName(QStringLiteral("addressBar"));
    setAccessibleName(QStringLiteral("Adressleiste"));
    setToolTip(QStringLiteral("Klicken, um einen Pfad einzugeben"));
    setCursor(Qt::IBeamCursor);
    m_row->setContentsMargins(scaled(8), 0, scaled(8), 0);
    m_row->setSpacing(0);
    m_stack->setContentsMargins(0, 0, 0, 0);
    m_stack->addWidget(m_steps);
    m_stack->addWidget(m_field);
    m_field->setObjectName(QStringLiteral("pathField"));
    m_field->setAccessibleName(QStringLiteral("Pfad"));
    m_field->installEventFilter(this);
    auto *const completer = new QCompleter(&m_completions, this);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setCompletionMode(QCompleter::PopupCompletion);
    completer->popup()->setProperty("kind", QStringLiteral("popup"));
    completer->popup()->setObjectName(QStringLiteral("pathCompletions"));
    m_field->setCompleter(completer);
    connect(m_field, &QLineEdit::textEdited, this, &AddressBar::complete);
    connect(m_field, &QLineEdit::returnPressed, this, [this] {
        const QString typed = m_field->text();
        stopEditing();
        Q_EMIT left();
        if (m_pane)
            m_pane->navigateToTyped(typed);
    });
    m_reason = new FieldReason(m_field);
    connect(m_reason, &FieldReason::actionClicked, this, &AddressBar::showRefusedFile);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

QSize AddressBar::sizeHint() const
{
    return {scaled(320), scaled(32)};
}

void AddressBar::setPane(BrowserModel *pane)
{
    m_completing.drop();
    m_stack->setCurrentWidget(m_steps);
    m_reason->clear();
    m_pane = pane;
    m_following = std::make_unique<QObject>();
    if (pane) {
        pane->current.observe(m_following.get(), [this](const Location &) { rebuild(); });
        pane->refusedPath.observe(m_following.get(), [this](const std::optional<RefusedPath> &refused) {
            const bool mayTake = mayTakeFocus();
            showRefused(refused);
            if (refused && mayTake)
                m_field->setFocus();
        });
    }
    rebuild();
    if (pane)
        showRefused(pane->refusedPath.get());
}

void AddressBar::setPage(const QStringList &words)
{
    if (m_page == words)
        return;
    m_page = words;
    rebuild();
}

bool AddressBar::isEditing() const
{
    return m_stack->currentWidget() == m_field;
}

void AddressBar::editPath()
{
    if (!m_pane)
        return;
    showField();
    m_field->setFocus();
    m_field->selectAll();
}

void AddressBar::showField()
{
    m_field->setText(shown(m_pane->current.get()));
    m_completed.reset();
    m_completions.setStringList({});
    m_stack->setCurrentWidget(m_field);
}

/// Whether the user is still here or in a list, not typing somewhere else.
bool AddressBar::mayTakeFocus() const
{
    const QWidget *const focus = QApplication::focusWidget();
    return !focus || isAncestorOf(focus) || qobject_cast<const QAbstractItemView *>(focus);
}

void AddressBar::stopEditing()
{
    m_completing.drop();
    m_stack->setCurrentWidget(m_steps);
    if (m_pane && m_pane->refusedPath.get())
        m_pane->dismissError();
}

/// What was typed stays in the field. A volume may answer after the user went on to something else: then the field only
/// shows it, until it is used or the pane shows another folder.
void AddressBar::showRefused(const std::optional<RefusedPath> &refused)
{
    if (!refused) {
        m_reason->clear();
        if (!m_field->hasFocus())
            m_stack->setCurrentWidget(m_steps);
        return;
    }
    showField();
    m_field->setText(refused->typed);
    m_reason->show(refused->reason, refused->file.empty() ? QString() : QStringLiteral("Im Ordner zeigen"));
}

void AddressBar::showRefusedFile()
{
    if (!m_pane || !m_pane->refusedPath.get())
        return;
    const Location file = m_pane->refusedPath.get()->file;
    stopEditing();
    Q_EMIT left();
    m_pane->showEntry(file);
}

void AddressBar::rebuild()
{
    while (QLayoutItem *const old = m_row->takeAt(0)) {
        if (old->widget()) {
            old->widget()->hide();
            old->widget()->deleteLater();
        }
        delete old;
    }
    m_stepWidgets.clear();
    addOverflow();
    m_crumbs = m_pane && m_page.isEmpty() ? crumbsOf(m_pane->current.get(), m_folders) : std::vector<Crumb>();
    const int count = m_page.isEmpty() ? static_cast<int>(m_crumbs.size()) : static_cast<int>(m_page.size());
    for (int step = 0; step < count; ++step) {
        const bool last = step == count - 1;
        const QString title = m_page.isEmpty() ? m_crumbs[static_cast<std::size_t>(step)].title : m_page.at(step);
        m_stepWidgets.push_back({addStep(title, step, last)});
        if (!last)
            m_stepWidgets.back().push_back(addSeparator(step));
    }
    m_row->addStretch(1);
    fit();
}

/// Takes the place of the first steps when the bar is too narrow for all.
void AddressBar::addOverflow()
{
    auto *const button = new CrumbButton({}, false, m_steps);
    button->setObjectName(QStringLiteral("crumbOverflow"));
    button->setSymbol(QStringLiteral("ellipsis"));
    button->setAccessibleName(QStringLiteral("Ordner darüber"));
    button->setToolTip(button->accessibleName());
    connect(button, &QAbstractButton::clicked, this, &AddressBar::openOverflow);
    m_row->addWidget(button);
    m_overflow = button;
}

/// Hides the first steps until the current one can be read.
void AddressBar::fit()
{
    const auto widthOf = [](const std::vector<QWidget *> &step) {
        int width = 0;
        for (const QWidget *const one : step)
            width += one->maximumWidth() < QWIDGETSIZE_MAX ? one->maximumWidth() : one->sizeHint().width();
        return width;
    };
    const QMargins margins = m_row->contentsMargins();
    const int room = width() - margins.left() - margins.right() - scaled(freeRoom);
    int needed = 0;
    for (const std::vector<QWidget *> &step : m_stepWidgets)
        needed += widthOf(step);
    const bool overflows = needed > room && m_stepWidgets.size() > 1;
    if (overflows)
        needed += m_overflow->sizeHint().width();
    m_overflow->setVisible(overflows);
    for (std::size_t step = 0; step < m_stepWidgets.size(); ++step) {
        const bool hides = needed > room && step + 1 < m_stepWidgets.size();
        if (hides)
            needed -= widthOf(m_stepWidgets[step]);
        for (QWidget *const one : m_stepWidgets[step])
            one->setVisible(!hides);
    }
}

/// The hidden steps, the nearest first.
void AddressBar::openOverflow()
{
    auto *const menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("overflow"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (std::size_t step = m_stepWidgets.size(); step-- > 0;) {
        const auto *const crumb = static_cast<QAbstractButton *>(m_stepWidgets[step].front());
        if (crumb->isHidden())
            menu->addAction(EntryIcons::folder(scaled(16), devicePixelRatioF()), menuText(crumb->text()), this,
                            [this, step] { goTo(static_cast<int>(step)); });
    }
    menu->popup(m_overflow->mapToGlobal(QPoint(0, m_overflow->height())));
}

QWidget *AddressBar::addStep(const QString &title, int step, bool last)
{
    auto *const button = new CrumbButton(title, last, m_steps);
    button->setObjectName(QStringLiteral("crumb%1").arg(step));
    if (step == 0)
        button->setSymbol(m_page.isEmpty() && !m_crumbs.empty() && m_crumbs.front().folder == m_folders.home
                              ? QStringLiteral("house")
                          : m_page.isEmpty() ? QStringLiteral("hard-drive")
                                             : QStringLiteral("house"));
    connect(button, &QAbstractButton::clicked, this, [this, step] { goTo(step); });
    m_row->addWidget(button);
    if (m_page.isEmpty()) {
        const Location folder = m_crumbs[static_cast<std::size_t>(step)].folder;
        button->onMiddleClick([this, folder] { Q_EMIT backgroundTabRequested(folder); });
        auto *const drop = new FileDrop(button, [folder](QPoint) { return std::optional(folder); });
        connect(drop, &FileDrop::dropped, this, &AddressBar::dropped);
        connect(drop, &FileDrop::over, button, [button](const auto &over) { button->setMarked(over.has_value()); });
        connect(drop, &FileDrop::sprung, this, [this](const Location &to) {
            if (m_pane && m_pane->current.get() != to)
                m_pane->navigate(to);
        });
    }
    return button;
}

/// Every crumb navigates; that of the folder shown refreshes it, or ends the search in it.
void AddressBar::goTo(int step)
{
    if (!m_page.isEmpty())
        Q_EMIT pageStepClicked(step);
    else if (m_pane && m_pane->searching.get() && static_cast<std::size_t>(step) + 1 == m_crumbs.size())
        m_pane->endResults();
    else if (m_pane)
        m_pane->navigate(m_crumbs[static_cast<std::size_t>(step)].folder);
}

QWidget *AddressBar::addSeparator(int step)
{
    auto *const mark = new CrumbButton({}, false, m_steps);
    mark->setSymbol(QStringLiteral("chevron-right"));
    mark->setFixedWidth(scaled(20));
    mark->setObjectName(QStringLiteral("crumbMenu%1").arg(step));
    if (m_page.isEmpty()) {
        const QString folder = m_crumbs[static_cast<std::size_t>(step)].title;
        mark->setAccessibleName(QStringLiteral("Ordner in „%1“").arg(folder));
        mark->setToolTip(mark->accessibleName());
        connect(mark, &QAbstractButton::clicked, this, [this, step, mark] { openMenu(step, mark); });
    } else {
        mark->setEnabled(false);
    }
    m_row->addWidget(mark);
    return mark;
}

void AddressBar::openMenu(int step, QWidget *under)
{
    const Location folder = m_crumbs[static_cast<std::size_t>(step)].folder;
    const Location next = m_crumbs[static_cast<std::size_t>(step) + 1].folder;
    auto *const menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("siblings"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(QStringLiteral("Lade …"))->setEnabled(false);
    const QPointer<QMenu> shown = menu;
    m_siblings.start(
        m_workers, {.where = folder},
        [folder, volumes = &m_volumes](const JobControl &control) {
            return readListing(folder, HiddenEntries::LeftOut, *volumes, &control);
        },
        [this, shown, next](const Listing &listing) {
            if (shown)
                fillMenu(shown, listing.items, next);
        },
        [shown] {
            if (shown)
                shown->actions().constFirst()->setText(QStringLiteral("Das Laufwerk antwortet nicht."));
        });
    menu->popup(under->mapToGlobal(QPoint(0, under->height())));
}

void AddressBar::fillMenu(QMenu *menu, const FileItems &items, const Location &next)
{
    menu->clear();
    DisplayOptions options;
    options.filter = [](const FileItem &item) { return item.isFolder; };
    const DisplayedItems folders = displayed(items, options);
    for (std::size_t row = 0; row < std::min(folders.size(), mostSiblings); ++row) {
        const Location folder = folders[row].location();
        QAction *const action = menu->addAction(EntryIcons::folder(scaled(16), devicePixelRatioF()),
                                                menuText(folders[row].name()), this, [this, folder] {
                                                    if (m_pane)
                                                        m_pane->navigate(folder);
                                                });
        QFont titled = menu->font();
        titled.setWeight(folder == next ? QFont::DemiBold : QFont::Normal);
        action->setFont(titled);
    }
    if (folders.empty())
        menu->addAction(QStringLiteral("Keine Ordner"))->setEnabled(false);
    if (folders.size() > mostSiblings)
        menu->addAction(QStringLiteral("und %1 weitere").arg(folders.size() - mostSiblings))->setEnabled(false);
    menu->adjustSize();
}

/// Loads the folders inside the typed path up to its last "/" for the completer.
void AddressBar::complete(const QString &typed)
{
    if (!m_pane || !typed.contains(QLatin1Char('/')))
        return;
    const QString written = typed.left(typed.lastIndexOf(QLatin1Char('/')) + 1);
    QString above = written;
    if (above.startsWith(QStringLiteral("~/")))
        above.replace(0, 1, shown(m_folders.home));
    const Location folder = standardised(m_pane->current.get() / above.toStdString());
    const bool hiddenToo = m_pane->showHidden.get() || typed.mid(written.size()).startsWith(QLatin1Char('.'));
    const HiddenEntries hidden = hiddenToo ? HiddenEntries::Shown : HiddenEntries::LeftOut;
    if (m_completed == std::pair(written, hidden))
        return;
    m_completing.start(
        m_workers, {.where = folder, .patience = FileCall<Listing>::Patience::None},
        [folder, hidden, volumes = &m_volumes](const JobControl &control) {
            return readListing(folder, hidden, *volumes, &control);
        },
        [this, hidden, written](const Listing &listing) {
            m_completed = {written, hidden};
            QStringList paths;
            for (const FileItem &item : listing.items)
                if (item.isFolder)
                    paths.append(written + item.name() + QLatin1Char('/'));
            paths.sort();
            m_completions.setStringList(paths);
            if (isEditing())
                m_field->completer()->complete();
        },
        [] {});
}

void AddressBar::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        editPath();
}

bool AddressBar::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_field)
        return QWidget::eventFilter(watched, event);
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
        stopEditing();
        Q_EMIT left();
        return true;
    }
    // Ignore focus changes by a menu or the completion popup, which are temporary.
    if (event->type() == QEvent::FocusOut && !m_field->completer()->popup()->isVisible() &&
        static_cast<QFocusEvent *>(event)->reason() != Qt::PopupFocusReason &&
        !m_reason->isAncestorOf(QApplication::focusWidget()))
        stopEditing();
    return QWidget::eventFilter(watched, event);
}

void AddressBar::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_field->setFixedHeight(height());
    fit();
}

void AddressBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paintBox(painter, rect(), Token::Content);
}

} // namespace brellin
