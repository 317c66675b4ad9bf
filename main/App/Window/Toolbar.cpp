#include "App/Window/Toolbar.h"

#include "Look/Theme.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QSignalBlocker>
#include <QTimer>

namespace brellin {

Toolbar::Toolbar(const std::map<CommandId, QAction *> &actions, AddressBar *address, SearchField *search,
                 QWidget *parent)
    : QWidget(parent)
    , m_actions(actions)
    , m_search(search)
{
    setObjectName(QStringLiteral("toolbar"));
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(scaled(12), scaled(8), scaled(12), scaled(9));
    row->setSpacing(scaled(6));
    using enum CommandId;
    row->addWidget(
        add(CommandId::Sidebar, QStringLiteral("panel-left"), QStringLiteral("Seitenleiste ein-/ausblenden")));
    row->addWidget(add(Back, QStringLiteral("chevron-left"), QStringLiteral("Zurück")));
    row->addWidget(add(Forward, QStringLiteral("chevron-right"), QStringLiteral("Vorwärts")));
    offerHistory(m_buttons.at(Back), NavigationHistory::Way::Back);
    offerHistory(m_buttons.at(Forward), NavigationHistory::Way::Forward);
    row->addWidget(add(Up, QStringLiteral("arrow-up"), QStringLiteral("Übergeordneter Ordner")));
    row->addWidget(add(Reload, QStringLiteral("rotate-cw"), QStringLiteral("Aktualisieren")));
    row->addWidget(address, 1);
    row->addWidget(add(Details, QStringLiteral("list"), QStringLiteral("Als Liste")));
    row->addWidget(add(Icons, QStringLiteral("layout-grid"), QStringLiteral("Als Symbole")));
    buildSize();
    row->addWidget(m_size);
    row->addWidget(add(DualPane, QStringLiteral("columns-2"),
                       QStringLiteral("Zwei Ordner nebeneinander – Dateien von links nach rechts ziehen")));
    row->addWidget(add(Preview, QStringLiteral("panel-right"), QStringLiteral("Vorschaufenster")));
    row->addWidget(add(NewFolder, QStringLiteral("folder-plus"), QStringLiteral("Neuer Ordner")));
    row->addWidget(add(Pin, QStringLiteral("pin"), QStringLiteral("Ordner an Schnellzugriff anheften")));
    row->addWidget(search);
    row->addWidget(add(CommandId::Agent, QStringLiteral("wand.and.sparkles"), QStringLiteral("Aufräum-Agent")));
    m_more = new SymbolButton(QStringLiteral("ellipsis"), QStringLiteral("Alle Befehle"),
                              QStringLiteral("commandsButton"), this);
    connect(m_more, &QAbstractButton::clicked, this, [this] { Q_EMIT menuRequested(m_more); });
    row->addWidget(m_more);
}

void Toolbar::buildSize()
{
    m_size = new QSlider(Qt::Horizontal, this);
    m_size->setObjectName(QStringLiteral("iconSize"));
    m_size->setRange(40, 256);
    m_size->setSingleStep(16);
    m_size->setPageStep(48);
    m_size->setFixedWidth(scaled(90));
    m_size->setAccessibleName(QStringLiteral("Symbolgröße"));
    m_size->hide();
    connect(m_size, &QSlider::valueChanged, this, [this](int side) {
        if (m_pane)
            m_pane->setIconSize(side);
    });
}

SymbolButton *Toolbar::add(CommandId id, const QString &symbol, const QString &help)
{
    const WindowCommand &command = windowCommand(id);
    auto *const button = new SymbolButton(symbol, help, QStringLiteral("tool%1").arg(static_cast<int>(id)), this);
    button->setAccessibleName(command.title);
    button->setCheckable(static_cast<bool>(command.checked) && id != CommandId::Sidebar);
    connect(button, &QAbstractButton::clicked, m_actions.at(id), &QAction::trigger);
    m_buttons[id] = button;
    m_helps[id] = help;
    return button;
}

void Toolbar::offerHistory(SymbolButton *arrow, NavigationHistory::Way way)
{
    constexpr int longPress = 400; // ms
    const auto offer = [this, arrow, way] {
        arrow->setDown(false); // so that the release is no click
        Q_EMIT historyRequested(way, arrow);
    };
    arrow->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(arrow, &QWidget::customContextMenuRequested, this, offer);
    auto *const held = new QTimer(arrow);
    held->setSingleShot(true);
    held->setInterval(longPress);
    connect(arrow, &QAbstractButton::pressed, held, qOverload<>(&QTimer::start));
    connect(arrow, &QAbstractButton::released, held, &QTimer::stop);
    connect(held, &QTimer::timeout, this, offer);
}

void Toolbar::showKeys(const Shortcuts &shortcuts)
{
    const auto inBrackets = [](const QString &keys) {
        return keys.isEmpty() ? keys : QStringLiteral(" (%1)").arg(keys);
    };
    for (const auto &[id, button] : m_buttons)
        button->setToolTip(m_helps.at(id) + inBrackets(shortcuts.textOf(id)));
    m_more->setToolTip(QStringLiteral("Alle Befehle") + inBrackets(shortcuts.textOf(CommandId::AllCommands)));
    QStringList zoom{shortcuts.textOf(CommandId::LargerIcons), shortcuts.textOf(CommandId::SmallerIcons)};
    zoom.removeAll(QString());
    m_size->setToolTip(
        QStringLiteral("Symbolgröße") +
        inBrackets(zoom.join(QStringLiteral(" / ")).replace(QStringLiteral("+-"), QStringLiteral("+−"))));
}

void Toolbar::setAgentBadge(int number)
{
    m_buttons.at(CommandId::Agent)->setBadge(number);
}

void Toolbar::showState(const CommandState &state)
{
    for (const auto &[id, button] : m_buttons) {
        button->setEnabled(m_actions.at(id)->isEnabled());
        if (button->isCheckable())
            button->setChecked(windowCommand(id).checked(state));
    }
    m_search->setEnabled(!state.page);
    m_pane = state.pane;
    const bool icons = !state.page && state.pane && state.pane->viewMode.get() == ViewMode::Icons;
    if (icons) {
        const QSignalBlocker quiet(m_size);
        m_size->setValue(qRound(state.pane->iconSize.get()));
    }
    m_size->setVisible(icons);
}

void Toolbar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), color(Token::Window));
    painter.fillRect(QRect(0, height() - 1, width(), 1), color(Token::Line));
}

} // namespace brellin
