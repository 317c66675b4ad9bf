#include "Features/Screens/NetworkPage.h"

#include "Features/Screens/NetworkQuestionSheet.h"
#include "Features/Screens/NetworkRows.h"
#include "Look/BusyBar.h"
#include "Look/Buttons.h"
#include "Look/Cards.h"
#include "Look/Labels.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"
#include "Places/NetworkServers.h"
#include "Places/ServerAddress.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <QScrollArea>
#include <QShortcut>

namespace brellin {

using State = NetworkRows::State;

namespace {

struct AddressKind {
    const char16_t *scheme;
    const char16_t *example;
    const char16_t *meaning;
};

constexpr AddressKind kinds[] = {
    {u"smb", u"smb://server/freigabe", u"Freigaben von Windows, Macs und den meisten Netzwerkspeichern (NAS)"},
    {u"sftp", u"sftp://server/ordner", u"Rechner mit SSH-Zugang, verschlüsselt"},
    {u"davs", u"davs://server/ordner", u"Cloud-Speicher über WebDAV, verschlüsselt; „dav“ ohne Verschlüsselung"},
    {u"nfs", u"nfs://server/ordner", u"Freigaben von Linux- und Unix-Servern"},
    {u"ftp", u"ftp://server/ordner", u"Ältere Server, ohne Verschlüsselung"},
};

Card *roomyCard(QWidget *parent)
{
    auto *const card = new Card(parent);
    const int margin = shadowReach() + scaled(18);
    card->content()->setContentsMargins(margin, margin - scaled(4), margin, margin - scaled(4));
    card->content()->setSpacing(scaled(10));
    return card;
}

} // namespace

struct NetworkPage::Private {
    Private(NetworkPage &page, NetworkServers &known) : q(page), servers(known), rows(known, &page) {}

    void build();
    QWidget *buildAddress();
    QLayout *buildKinds(QWidget *parent);
    QWidget *buildServers();
    void connectAll();

    void connectTo(const QString &typed);
    void finished(const QString &wanted, const Result<Location> &place);
    void separate(const QString &wanted);
    void forget(const QString &wanted);
    void ask(const std::optional<ServerQuestion> &question);
    void say(const QString &text);
    void refreshAll();
    void showMenu(QPoint place);
    QString selected() const;

    NetworkPage &q;
    NetworkServers &servers;
    NetworkRows rows;
    QString ours; ///< the address this page is connecting to; empty if none
    QPointer<NetworkQuestionSheet> sheet;
    QLineEdit *address = nullptr;
    QPushButton *connecting = nullptr;
    QPushButton *stop = nullptr;
    QProgressBar *progress = nullptr;
    TextLabel *message = nullptr;
    QListView *list = nullptr;
    QPushButton *open = nullptr;
    QPushButton *away = nullptr;
    QPushButton *remove = nullptr;
    QWidget *serversCard = nullptr;
};

NetworkPage::NetworkPage(NetworkServers &servers, QWidget *parent)
    : QWidget(parent)
    , d(std::make_unique<Private>(*this, servers))
{
    setObjectName(QStringLiteral("networkPage"));
    setAccessibleName(QStringLiteral("Netzwerk"));
    d->build();
    d->connectAll();
    d->refreshAll();
    setFocusProxy(d->address);
}

NetworkPage::~NetworkPage()
{
    if (!d->ours.isEmpty())
        d->servers.cancel();
    if (d->sheet)
        d->sheet->withdraw();
}

void NetworkPage::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(rect(), color(Token::Window));
}

void NetworkPage::Private::build()
{
    auto *const inner = new QWidget;
    auto *const column = new QVBoxLayout(inner);
    const int margin = scaled(30) - shadowReach();
    column->setContentsMargins(margin, scaled(22), margin, scaled(18));
    column->setSpacing(0);
    auto *const head = new QVBoxLayout;
    head->setContentsMargins(shadowReach(), 0, shadowReach(), 0);
    head->setSpacing(scaled(4));
    head->addWidget(makeTitle(QStringLiteral("Netzwerk"), inner));
    head->addWidget(makeSecondary(
        QStringLiteral("Verbinde dich mit einem Server; seine Ordner erscheinen dann wie die eigenen."), inner));
    column->addLayout(head);
    column->addWidget(buildAddress());
    serversCard = buildServers();
    column->addWidget(serversCard);
    column->addStretch(1);
    inner->setMaximumWidth(scaled(860));

    auto *const area = new QScrollArea(&q);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    area->viewport()->setAutoFillBackground(false);
    area->setWidget(inner);
    auto *const whole = new QVBoxLayout(&q);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(area);
}

QWidget *NetworkPage::Private::buildAddress()
{
    Card *const card = roomyCard(&q);
    card->content()->addWidget(makeHeading(QStringLiteral("Adresse des Servers"), card));
    auto *const line = new QHBoxLayout;
    line->setSpacing(scaled(8));
    address = new QLineEdit(card);
    address->setObjectName(QStringLiteral("networkAddress"));
    address->setAccessibleName(QStringLiteral("Adresse des Servers"));
    address->setPlaceholderText(QStringLiteral("smb://server/freigabe"));
    address->setClearButtonEnabled(true);
    line->addWidget(address, 1);
    connecting = makeButton(QStringLiteral("Verbinden"), ButtonKind::Primary, QStringLiteral("networkConnect"), card);
    stop = makeButton(QStringLiteral("Abbrechen"), ButtonKind::Usual, QStringLiteral("networkStop"), card);
    line->addWidget(connecting);
    line->addWidget(stop);
    card->content()->addLayout(line);
    progress = makeBusyBar(QStringLiteral("Verbindung wird hergestellt"), QStringLiteral("networkProgress"),
                           WhenHidden::GivesRoom, card);
    card->content()->addWidget(progress);
    message = makeBody({}, card);
    message->setObjectName(QStringLiteral("networkError"));
    message->setToken(Token::Danger);
    message->hide();
    card->content()->addWidget(message);
    card->content()->addWidget(new Separator(Qt::Horizontal, card));
    card->content()->addLayout(buildKinds(card));
    return card;
}

/// The supported kinds of addresses; a click starts one.
QLayout *NetworkPage::Private::buildKinds(QWidget *parent)
{
    auto *const grid = new QGridLayout;
    grid->setHorizontalSpacing(scaled(14));
    grid->setVerticalSpacing(scaled(2));
    grid->setColumnStretch(1, 1);
    int row = 0;
    for (const AddressKind &kind : kinds) {
        const QString scheme = QString::fromUtf16(kind.scheme);
        auto *const example = makeButton(QString::fromUtf16(kind.example), ButtonKind::Link,
                                         QStringLiteral("networkKind-") + scheme, parent);
        example->setToolTip(QStringLiteral("Eine solche Adresse beginnen"));
        connect(example, &QPushButton::clicked, &q, [this, scheme] {
            address->setText(scheme + QStringLiteral("://"));
            address->setFocus(Qt::OtherFocusReason);
        });
        grid->addWidget(example, row, 0, Qt::AlignLeft);
        grid->addWidget(makeSecondary(QString::fromUtf16(kind.meaning), parent), row, 1, Qt::AlignVCenter);
        ++row;
    }
    return grid;
}

QWidget *NetworkPage::Private::buildServers()
{
    Card *const card = roomyCard(&q);
    card->setObjectName(QStringLiteral("networkRemembered"));
    card->content()->addWidget(makeHeading(QStringLiteral("Gemerkte Server"), card));
    list = new QListView(card);
    list->setObjectName(QStringLiteral("networkServers"));
    list->setAccessibleName(QStringLiteral("Gemerkte Server"));
    list->setModel(&rows);
    list->setItemDelegate(new NetworkRowDelegate(list));
    list->setEditTriggers(QAbstractItemView::EditKeyPressed);
    list->setContextMenuPolicy(Qt::CustomContextMenu);
    list->setMouseTracking(true);
    list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    card->content()->addWidget(list);
    auto *const line = new QHBoxLayout;
    line->setSpacing(scaled(8));
    line->addStretch(1);
    remove = makeButton(QStringLiteral("Entfernen"), ButtonKind::Plain, QStringLiteral("networkForget"), card);
    away = makeButton(QStringLiteral("Trennen"), ButtonKind::Usual, QStringLiteral("networkDisconnect"), card);
    open = makeButton(QStringLiteral("Verbinden"), ButtonKind::Usual, QStringLiteral("networkOpen"), card);
    for (QPushButton *const button : {remove, away, open})
        line->addWidget(button);
    card->content()->addLayout(line);
    return card;
}

void NetworkPage::Private::connectAll()
{
    connect(connecting, &QPushButton::clicked, &q, [this] { connectTo(address->text()); });
    connect(address, &QLineEdit::returnPressed, &q, [this] { connectTo(address->text()); });
    connect(address, &QLineEdit::textChanged, &q, [this] { refreshAll(); });
    connect(stop, &QPushButton::clicked, &q, [this] { servers.cancel(); });
    connect(list, &QListView::activated, &q, [this](const QModelIndex &index) { connectTo(rows.address(index)); });
    connect(list, &QWidget::customContextMenuRequested, &q, [this](QPoint place) { showMenu(place); });
    connect(list->selectionModel(), &QItemSelectionModel::selectionChanged, &q, [this] { refreshAll(); });
    connect(open, &QPushButton::clicked, &q, [this] { connectTo(selected()); });
    connect(away, &QPushButton::clicked, &q, [this] { separate(selected()); });
    connect(remove, &QPushButton::clicked, &q, [this] { forget(selected()); });
    auto *const removing = new QShortcut(Qt::Key_Delete, list, [this] { forget(selected()); });
    removing->setContext(Qt::WidgetShortcut);
    connect(&rows, &NetworkRows::failed, &q, [this](const QString &text) { say(text); });
    connect(&rows, &QAbstractItemModel::layoutChanged, &q, [this] { refreshAll(); });
    servers.connecting.observe(&q, [this](const QString &) { refreshAll(); });
    servers.question.observe(&q, [this](const std::optional<ServerQuestion> &question) { ask(question); });
}

QString NetworkPage::Private::selected() const
{
    const QModelIndexList indexes = list->selectionModel()->selectedIndexes();
    return indexes.isEmpty() ? QString() : rows.address(indexes.front());
}

void NetworkPage::Private::connectTo(const QString &typed)
{
    if (typed.trimmed().isEmpty() || !servers.connecting.get().isEmpty())
        return;
    say({});
    const Result<ServerAddress> parsed = ServerAddress::parse(typed);
    if (!parsed) {
        say(parsed.error().message);
        return;
    }
    ours = parsed->text();
    rows.setState(ours, State::Connecting);
    servers.connectTo(typed, &q, [this, wanted = ours](const Result<Location> &place) { finished(wanted, place); });
}

void NetworkPage::Private::finished(const QString &wanted, const Result<Location> &place)
{
    ours.clear();
    const bool cancelled = !place && place.error().isCancelled();
    rows.setState(wanted, place ? State::Connected : cancelled ? State::Unknown : State::Failed);
    refreshAll();
    if (!place) {
        if (!cancelled)
            say(place.error().message);
        return;
    }
    // The address may have contained a password.
    address->clear();
    Q_EMIT q.connected(*place);
}

void NetworkPage::Private::separate(const QString &wanted)
{
    if (wanted.isEmpty())
        return;
    say({});
    servers.disconnectFrom(wanted, &q, [this, wanted](const Result<void> &done) {
        if (done)
            rows.setState(wanted, State::Unknown);
        else
            say(done.error().message);
        refreshAll();
    });
}

/// Removes it from the list only; neither a connection nor the server is affected.
void NetworkPage::Private::forget(const QString &wanted)
{
    if (wanted.isEmpty())
        return;
    const Result<void> done = servers.forget(wanted);
    say(done ? QString() : done.error().message);
}

/// Only the page that is connecting asks; every window may have one.
void NetworkPage::Private::ask(const std::optional<ServerQuestion> &question)
{
    if (sheet)
        sheet->withdraw();
    if (!question || ours.isEmpty())
        return;
    sheet = new NetworkQuestionSheet(*question, &q);
    connect(sheet, &NetworkQuestionSheet::answered, &q, [this](const ServerAnswer &answer) { servers.answer(answer); });
    connect(sheet, &NetworkQuestionSheet::refused, &q, [this] { servers.cancel(); });
    sheet->open();
    sheet->focusFirstGap();
}

void NetworkPage::Private::say(const QString &text)
{
    message->setText(text);
    message->setVisible(!text.isEmpty());
}

void NetworkPage::Private::refreshAll()
{
    const bool busy = !servers.connecting.get().isEmpty();
    const QString chosen = selected();
    connecting->setVisible(ours.isEmpty());
    connecting->setEnabled(!busy && !address->text().trimmed().isEmpty());
    connecting->setToolTip(busy ? QStringLiteral("Es wird gerade schon ein Server verbunden.")
                                : QStringLiteral("Verbindet mit dem Server dieser Adresse (Enter)"));
    stop->setVisible(!ours.isEmpty());
    progress->setVisible(busy);
    address->setEnabled(ours.isEmpty());
    open->setEnabled(!busy && !chosen.isEmpty());
    open->setText(rows.state(chosen) == State::Connected ? QStringLiteral("Öffnen") : QStringLiteral("Verbinden"));
    remove->setEnabled(!chosen.isEmpty());
    away->setVisible(rows.state(chosen) == State::Connected);
    constexpr int most = 6;
    const int shown = std::min(rows.rowCount(), most);
    list->setFixedHeight(shown * scaled(48) + 4);
    serversCard->setVisible(shown > 0);
}

void NetworkPage::Private::showMenu(QPoint place)
{
    const QModelIndex index = list->indexAt(place);
    if (!index.isValid())
        return;
    list->setCurrentIndex(index);
    auto *const menu = new QMenu(&q);
    menu->setObjectName(QStringLiteral("networkMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QString chosen = rows.address(index);
    menu->addAction(Symbols::icon(QStringLiteral("plug")), open->text(), open, &QPushButton::click)
        ->setEnabled(open->isEnabled());
    if (rows.state(chosen) == State::Connected)
        menu->addAction(Symbols::icon(QStringLiteral("unplug")), QStringLiteral("Trennen"), away, &QPushButton::click);
    menu->addAction(Symbols::icon(QStringLiteral("text-cursor-input")), QStringLiteral("Umbenennen"), &q,
                    [this, line = QPersistentModelIndex(index)] {
                        if (line.isValid())
                            list->edit(line);
                    });
    menu->addSeparator();
    menu->addAction(Symbols::icon(QStringLiteral("x")), QStringLiteral("Aus der Liste entfernen"), &q,
                    [this, chosen] { forget(chosen); });
    menu->popup(list->viewport()->mapToGlobal(place));
}

} // namespace brellin
