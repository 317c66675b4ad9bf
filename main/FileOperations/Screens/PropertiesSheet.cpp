#include "FileOperations/Screens/PropertiesSheet.h"

#include "Base/German.h"
#include "Features/Screens/DocumentPicture.h"
#include "Features/Screens/PreviewFactList.h"
#include "Features/Screens/PreviewTagRow.h"
#include "Look/Buttons.h"
#include "Look/Cards.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QProgressBar>

namespace brellin {

namespace {

constexpr QSize sheetSize(540, 0);
constexpr double iconSide = 52;

/// „1,2 MB (1.234.567 Byte) · 34 Dateien“
QString sizeLine(const EntrySize &size, bool files)
{
    QString text = sizeText(size.bytes);
    if (size.bytes >= 1000)
        text += QStringLiteral(" (%1 Byte)").arg(german().toString(static_cast<qlonglong>(size.bytes)));
    if (files)
        text += u" · "_qs + counted(size.files, QStringLiteral("Datei"), QStringLiteral("Dateien"));
    if (size.unreadable > 0)
        text += u" · "_qs + QStringLiteral("%1 nicht lesbar").arg(size.unreadable);
    if (size.state == EntrySize::State::Stopped)
        return QStringLiteral("mindestens ") + text;
    return size.state == EntrySize::State::Counting ? QStringLiteral("Wird gezählt … ") + text : text;
}

} // namespace

struct PropertiesSheet::Private {
    Private(PropertiesSheet &sheet, std::unique_ptr<EntryProperties> owned) : q(sheet), properties(std::move(owned)) {}

    void build();
    QLayout *buildHead();
    void buildTags();
    void buildDigest();
    void connectAll();
    QPushButton *addLink(QLayout &row, const QString &title, const QString &objectName);

    void refreshFacts();
    void refreshIcon();
    void refreshSize();
    void refreshDigest();
    void refreshError();

    PropertiesSheet &q;
    const std::unique_ptr<EntryProperties> properties;
    QLabel *icon = nullptr;
    TextLabel *name = nullptr;
    TextLabel *kind = nullptr;
    TextLabel *size = nullptr;
    QPushButton *stop = nullptr;
    QPushButton *again = nullptr;
    PreviewFactList *rows = nullptr;
    QPushButton *rights = nullptr;
    QWidget *tagPart = nullptr;
    PreviewTagRow *tags = nullptr;
    TextLabel *otherTags = nullptr;
    QWidget *digestPart = nullptr;
    TextLabel *digest = nullptr;
    QProgressBar *progress = nullptr;
    QPushButton *make = nullptr;
    QPushButton *stopDigest = nullptr;
    QPushButton *copy = nullptr;
    TextLabel *error = nullptr;
    QPushButton *finish = nullptr;
};

PropertiesSheet::PropertiesSheet(std::unique_ptr<EntryProperties> properties, QWidget *window)
    : SheetFrame(QStringLiteral("Eigenschaften"), {}, sheetSize, window)
    , d(std::make_unique<Private>(*this, std::move(properties)))
{
    setObjectName(QStringLiteral("propertiesSheet"));
    d->build();
    d->connectAll();
    d->refreshFacts();
    d->refreshSize();
    d->refreshDigest();
    d->refreshError();
}

PropertiesSheet::~PropertiesSheet() = default;

void PropertiesSheet::begin()
{
    open();
    d->finish->setFocus(Qt::OtherFocusReason);
}

void PropertiesSheet::Private::build()
{
    QVBoxLayout &column = *q.content();
    column.setSpacing(scaled(12));
    column.addLayout(buildHead());
    column.addWidget(new Separator(Qt::Horizontal, &q));
    rows = new PreviewFactList(&q);
    rows->setAccessibleName(QStringLiteral("Angaben"));
    column.addWidget(rows);
    rights = makeButton(QStringLiteral("Rechte ändern …"), ButtonKind::Link, QStringLiteral("propertiesRights"), &q);
    column.addWidget(rights, 0, Qt::AlignLeft);
    buildTags();
    buildDigest();
    error = makeBody({}, &q);
    error->setObjectName(QStringLiteral("propertiesError"));
    error->setToken(Token::Danger);
    column.addWidget(error);
    finish = makeButton(QStringLiteral("Fertig"), ButtonKind::Primary, QStringLiteral("propertiesFinish"), &q);
    q.buttons()->addWidget(finish);
    connect(finish, &QPushButton::clicked, &q, [this] { q.close(); });
}

QLayout *PropertiesSheet::Private::buildHead()
{
    auto *const head = new QHBoxLayout;
    head->setSpacing(scaled(14));
    icon = new QLabel(&q);
    head->addWidget(icon, 0, Qt::AlignTop);
    auto *const texts = new QVBoxLayout;
    texts->setSpacing(scaled(3));
    name = new TextLabel({}, Token::Text, 1.15, QFont::DemiBold, &q);
    name->setObjectName(QStringLiteral("propertiesName"));
    name->setWordWrap(true);
    name->setTextInteractionFlags(Qt::TextSelectableByMouse);
    kind = makeSecondary({}, &q);
    kind->setObjectName(QStringLiteral("propertiesKind"));
    size = makeBody({}, &q);
    size->setObjectName(QStringLiteral("propertiesSize"));
    size->setTextInteractionFlags(Qt::TextSelectableByMouse);
    texts->addWidget(name);
    texts->addWidget(kind);
    auto *const line = new QHBoxLayout;
    line->addWidget(size, 1);
    stop = addLink(*line, QStringLiteral("Anhalten"), QStringLiteral("propertiesStop"));
    again = addLink(*line, QStringLiteral("Weiterzählen"), QStringLiteral("propertiesAgain"));
    texts->addLayout(line);
    head->addLayout(texts, 1);
    return head;
}

QPushButton *PropertiesSheet::Private::addLink(QLayout &row, const QString &title, const QString &objectName)
{
    QPushButton *const made = makeButton(title, ButtonKind::Link, objectName, &q);
    row.addWidget(made);
    return made;
}

void PropertiesSheet::Private::buildTags()
{
    tagPart = new QWidget(&q);
    auto *const column = new QVBoxLayout(tagPart);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(scaled(6));
    column->addWidget(makeHeading(QStringLiteral("Markierungen"), tagPart));
    tags = new PreviewTagRow(tagPart);
    column->addWidget(tags);
    otherTags = makeSecondary({}, tagPart);
    otherTags->setObjectName(QStringLiteral("propertiesOtherTags"));
    column->addWidget(otherTags);
    q.content()->addWidget(tagPart);
}

void PropertiesSheet::Private::buildDigest()
{
    digestPart = new QWidget(&q);
    auto *const column = new QVBoxLayout(digestPart);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(scaled(6));
    auto *const head = new QHBoxLayout;
    head->addWidget(makeHeading(QStringLiteral("Prüfsumme (SHA-256)"), digestPart));
    head->addStretch(1);
    make = addLink(*head, QStringLiteral("Berechnen"), QStringLiteral("propertiesDigest"));
    stopDigest = addLink(*head, QStringLiteral("Anhalten"), QStringLiteral("propertiesDigestStop"));
    copy = addLink(*head, QStringLiteral("Kopieren"), QStringLiteral("propertiesDigestCopy"));
    column->addLayout(head);
    progress = new QProgressBar(digestPart);
    progress->setAccessibleName(QStringLiteral("Die Prüfsumme wird berechnet"));
    progress->setRange(0, 1000);
    progress->setTextVisible(false);
    column->addWidget(progress);
    digest = makeBody({}, digestPart);
    digest->setObjectName(QStringLiteral("propertiesDigestText"));
    digest->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    column->addWidget(digest);
    q.content()->addWidget(digestPart);
}

void PropertiesSheet::Private::connectAll()
{
    connect(rights, &QPushButton::clicked, &q, &PropertiesSheet::rightsWanted);
    connect(stop, &QPushButton::clicked, &q, [this] { properties->stopCounting(); });
    connect(again, &QPushButton::clicked, &q, [this] { properties->count(); });
    connect(make, &QPushButton::clicked, &q, [this] { properties->makeDigest(); });
    connect(stopDigest, &QPushButton::clicked, &q, [this] { properties->stopDigest(); });
    connect(copy, &QPushButton::clicked, &q,
            [this] { QApplication::clipboard()->setText(properties->digest.get().text); });
    connect(tags, &PreviewTagRow::toggled, &q, [this](const QString &tag) { properties->toggleTag(tag); });
    properties->facts.observe(&q, [this](const auto &) {
        refreshFacts();
        refreshError();
    });
    properties->size.observe(&q, [this](const EntrySize &) { refreshSize(); });
    properties->digest.observe(&q, [this](const EntryDigest &) { refreshDigest(); });
    properties->errorMessage.observe(&q, [this](const auto &) { refreshError(); });
    properties->tagChanges.observe(&q, [this](int) { Q_EMIT q.tagsChanged(properties->entries()); });
    connect(&Theme::shared(), &Theme::changed, &q, [this] { refreshIcon(); });
}

void PropertiesSheet::Private::refreshFacts()
{
    const EntryFacts facts = properties->facts.get().value_or(EntryFacts());
    const bool known = properties->facts.get().has_value();
    name->setText(known ? facts.name : QStringLiteral("Wird gelesen …"));
    kind->setText(facts.kind);
    kind->setVisible(!facts.kind.isEmpty());
    rows->setFacts(facts.rows);
    rights->setVisible(known && !facts.rows.empty() && !facts.onlyLinks);
    tagPart->setVisible(known && facts.taggable && !facts.rows.empty());
    tags->setTags(facts.tags);
    QStringList more;
    for (const QString &tag : facts.someTags)
        more << QStringLiteral("%1 (nicht bei allen)").arg(tag);
    otherTags->setText(more.join(QStringLiteral(", ")));
    otherTags->setVisible(!more.isEmpty());
    digestPart->setVisible(facts.digestible.has_value());
    refreshIcon();
    refreshSize();
}

void PropertiesSheet::Private::refreshIcon()
{
    const EntryFacts facts = properties->facts.get().value_or(EntryFacts());
    const double side = scaled(iconSide);
    const double pixels = q.devicePixelRatioF();
    const bool several = properties->entries().size() > 1;
    if (several || facts.folder) {
        icon->setPixmap(EntryIcons::folder(side, pixels));
        return;
    }
    icon->setPixmap(documentPicture(properties->entries().front().filename().native(), side, pixels));
}

void PropertiesSheet::Private::refreshSize()
{
    const EntrySize &now = properties->size.get();
    const bool one = properties->facts.get() && properties->facts.get()->digestible;
    size->setText(sizeLine(now, !one));
    stop->setVisible(now.state == EntrySize::State::Counting);
    again->setVisible(now.state == EntrySize::State::Stopped);
}

void PropertiesSheet::Private::refreshDigest()
{
    const EntryDigest &now = properties->digest.get();
    using State = EntryDigest::State;
    make->setVisible(now.state == State::None || now.state == State::Failed);
    stopDigest->setVisible(now.state == State::Running);
    copy->setVisible(now.state == State::Done);
    progress->setVisible(now.state == State::Running);
    progress->setValue(static_cast<int>(now.progress * 1000));
    digest->setVisible(!now.text.isEmpty());
    digest->setToken(now.state == State::Failed ? Token::Danger : Token::Text);
    // Groups of eight, so that the digest wraps and can be compared by eye; the copied text has no blanks.
    QString text = now.text;
    if (now.state == State::Done)
        for (qsizetype place = text.size() - 8; place > 0; place -= 8)
            text.insert(place, u' ');
    digest->setText(text);
}

void PropertiesSheet::Private::refreshError()
{
    QStringList lines = linesOf(properties->facts.get().value_or(EntryFacts()).failures);
    if (properties->errorMessage.get())
        lines.prepend(*properties->errorMessage.get());
    constexpr qsizetype most = 5;
    if (lines.size() > most)
        lines = lines.first(most) << QStringLiteral("… und %1 weitere").arg(lines.size() - most);
    error->setText(lines.join(u'\n'));
    error->setVisible(!lines.isEmpty());
}

void PropertiesSheet::readAgain()
{
    d->properties->read();
}

void PropertiesSheet::confirm()
{
    close();
}

} // namespace brellin
