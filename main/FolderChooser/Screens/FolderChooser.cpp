#include "FolderChooser/Screens/FolderChooser.h"

#include "ContentView/Screens/AddressBar.h"
#include "ContentView/Screens/PaneView.h"
#include "FolderChooser/Screens/ChooserPlaces.h"
#include "Look/Buttons.h"
#include "Look/Cards.h"
#include "Look/Labels.h"
#include "Look/Theme.h"
#include "System/PlainSetting.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>

namespace brellin {

namespace {

QString lastKey(const QString &purpose)
{
    return QStringLiteral("chosenFolder.") + purpose;
}

Location startOf(const FolderQuestion &question, const UserDefaults &defaults)
{
    const QString last =
        question.purpose.isEmpty() ? QString() : plainSetting(defaults, lastKey(question.purpose), QString());
    return last.startsWith(u'/') || last.startsWith(QStringLiteral("file://")) ? locationFromText(last)
                                                                               : question.start;
}

/// Why the folder cannot be chosen. May block.
std::optional<QString> refusalOf(const Location &folder, FolderQuestion::Use use, const MayChange &mayChange)
{
    std::error_code error;
    const std::filesystem::file_type type = std::filesystem::status(folder, error).type();
    if (type == std::filesystem::file_type::not_found)
        return QStringLiteral("Den Ordner gibt es nicht mehr.");
    if (type != std::filesystem::file_type::directory)
        return QStringLiteral("Der Ordner lässt sich nicht öffnen.");
    if (use == FolderQuestion::Use::Write && mayChange && !mayChange(folder / "x"))
        return QStringLiteral("Orte des Systems werden nicht verändert. Bitte einen anderen Ordner wählen.");
    return std::nullopt;
}

} // namespace

FolderChooser::FolderChooser(const FolderChooserServices &services, FolderQuestion question, QWidget *window)
    : SheetFrame(question.title, {}, {860, 580}, window)
    , m_services(services)
    , m_question(std::move(question))
    , m_pane(std::make_unique<BrowserModel>(services.panes, startOf(m_question, services.panes.defaults)))
{
    setObjectName(QStringLiteral("folderChooser"));
    m_pane->setItemFilter([](const FileItem &item) { return item.isFolder; });
    buildPane();
    buildButtons();
    follow();
    // The folder chosen last may be gone since.
    if (m_pane->folderGone.get())
        m_pane->goUp();
}

/// Deletes what refers to the pane.
FolderChooser::~FolderChooser()
{
    delete m_address;
    delete m_view;
}

void FolderChooser::buildPane()
{
    m_address = new AddressBar(m_services.panes.folders, m_services.panes.workers, m_services.panes.volumes, this);
    m_address->setPane(m_pane.get());
    m_address->installEventFilter(this);
    m_places = new ChooserPlaces(m_services.pins, m_services.volumes, m_services.panes.folders, this);
    m_places->setFixedWidth(scaled(190));
    m_view = new PaneView(
        *m_pane, {m_services.panes.defaults, m_services.panes.sizes, m_services.panes.colors, m_services.thumbnails},
        this);
    m_view->setActive(true);
    m_view->installEventFilter(this);
    auto *const row = new QHBoxLayout;
    row->addWidget(m_places);
    row->addWidget(new Separator(Qt::Vertical, this));
    row->addWidget(m_view, 1);
    content()->addWidget(m_address);
    content()->addLayout(row, 1);
    connect(m_address, &AddressBar::left, m_view, &PaneView::focusList);
    connect(m_view, &PaneView::escaped, this, &FolderChooser::escape);
    connect(m_places, &ChooserPlaces::chosen, this, [this](const Location &folder) {
        m_pane->navigate(folder);
        m_view->focusList();
    });
}

void FolderChooser::buildButtons()
{
    m_chosen = new ElidedLabel({}, Token::Text, 1, this);
    m_chosen->setObjectName(QStringLiteral("chosenFolder"));
    m_refusal = makeSecondary({}, this);
    m_refusal->setToken(Token::Danger);
    m_refusal->setObjectName(QStringLiteral("refusal"));
    m_refusal->hide();
    content()->addWidget(m_chosen);
    content()->addWidget(m_refusal);
    QPushButton *const create = makeButton(QStringLiteral("Neuer Ordner"), ButtonKind::Usual,
                                           QStringLiteral("newFolder"), this, QStringLiteral("folder-plus"));
    buttons()->insertWidget(0, create);
    QPushButton *const cancel =
        makeButton(QStringLiteral("Abbrechen"), ButtonKind::Usual, QStringLiteral("cancel"), this);
    m_accept = makeButton(m_question.accept, ButtonKind::Primary, QStringLiteral("accept"), this);
    m_accept->setToolTip(QStringLiteral("Strg+Eingabe"));
    buttons()->addWidget(cancel);
    buttons()->addWidget(m_accept);
    connect(create, &QPushButton::clicked, this, [this] { m_pane->newFolder(); });
    connect(cancel, &QPushButton::clicked, this, &FolderChooser::close);
    connect(m_accept, &QPushButton::clicked, this, &FolderChooser::accept);
}

void FolderChooser::follow()
{
    m_pane->current.observe(this, [this](const Location &folder) {
        m_places->setCurrent(folder);
        showCandidate();
    });
    m_pane->selection.observe(this, [this](const Selection &) { showCandidate(); });
    m_pane->folderGone.observe(this, [this](bool) {
        m_shown.clear();
        showCandidate();
    });
    m_places->setCurrent(m_pane->current.get());
    showCandidate();
}

void FolderChooser::begin()
{
    open();
    m_view->focusList();
}

Location FolderChooser::candidate() const
{
    const FileItem *const only = m_pane->onlySelected();
    return only && only->isFolder ? only->location() : m_pane->current.get();
}

void FolderChooser::showCandidate()
{
    const Location folder = candidate();
    if (folder == m_shown)
        return;
    m_shown = folder;
    m_chosen->setText(QStringLiteral("Ordner: ") + shown(folder));
    m_refusal->hide();
    m_accept->setEnabled(true);
    examine([] {});
}

void FolderChooser::examine(const std::function<void()> &allowed)
{
    m_examining.start(
        m_services.panes.workers, {.where = m_shown, .patience = FileCall<std::optional<QString>>::Patience::None},
        [folder = m_shown, use = m_question.use, mayChange = m_services.panes.mayChange](const JobControl &) {
            return refusalOf(folder, use, mayChange);
        },
        [this, allowed](const std::optional<QString> &refusal) {
            if (refusal)
                refuse(*refusal);
            else
                allowed();
        },
        [this] { refuse(QStringLiteral("Das Laufwerk antwortet nicht.")); });
}

void FolderChooser::refuse(const QString &reason)
{
    m_refusal->setText(reason);
    m_refusal->show();
    m_accept->setEnabled(false);
}

void FolderChooser::accept()
{
    m_view->settle();
    showCandidate();
    if (!m_accept->isEnabled())
        return;
    examine([this, folder = m_shown] {
        if (!m_question.purpose.isEmpty()) // if it cannot be stored, the next question begins elsewhere
            (void)m_services.panes.defaults.setValue(lastKey(m_question.purpose), textOf(folder));
        close();
        Q_EMIT chosen(folder);
    });
}

bool FolderChooser::runKey(const QKeyEvent &event)
{
    const QKeyCombination typed = event.keyCombination();
    const bool enter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    if (enter && event.modifiers() & Qt::ControlModifier)
        accept();
    else if (typed == (Qt::CTRL | Qt::Key_L))
        m_address->editPath();
    else if (typed == (Qt::CTRL | Qt::SHIFT | Qt::Key_N))
        m_pane->newFolder();
    else if (typed == (Qt::ALT | Qt::Key_Up))
        m_pane->goUp();
    else if (typed == (Qt::ALT | Qt::Key_Left))
        m_pane->goBack();
    else if (typed == (Qt::ALT | Qt::Key_Right))
        m_pane->goForward();
    else
        return false;
    return true;
}

void FolderChooser::keyPressEvent(QKeyEvent *event)
{
    if (runKey(*event))
        event->accept();
    else
        SheetFrame::keyPressEvent(event);
}

/// Return in the path field is the field's alone, though it passes it on. The list's keys are heard before the scroll
/// area around it takes the arrows.
bool FolderChooser::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && (watched == m_address || watched == m_view)) {
        const auto &key = *static_cast<QKeyEvent *>(event);
        const bool enter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
        if (watched == m_address ? enter : runKey(key))
            return true;
    }
    return SheetFrame::eventFilter(watched, event);
}

} // namespace brellin
