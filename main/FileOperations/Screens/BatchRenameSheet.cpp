#include "FileOperations/Screens/BatchRenameSheet.h"

#include "Base/German.h"
#include "FileOperations/Screens/BatchRenameForm.h"
#include "FileOperations/Screens/BatchRenameRowDelegate.h"
#include "FileOperations/Screens/BatchRenameRows.h"
#include "Look/Buttons.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QHeaderView>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedLayout>
#include <QTimer>
#include <QTreeView>

#include <algorithm>
#include <iterator>
#include <utility>

namespace brellin {

namespace {

constexpr QSize wantedSize(820, 640);
/// From this many entries on, update the preview only after a pause in typing: planning takes longer than a keystroke.
constexpr std::size_t manyEntries = 1000;
constexpr int typingPause = 120;

QString entriesText(std::size_t count)
{
    return counted(static_cast<qint64>(count), QStringLiteral("Element"), QStringLiteral("Elemente"));
}

} // namespace

struct BatchRenameSheet::Private {
    Private(BatchRenameSheet &sheet, std::unique_ptr<BatchRename> renames) : q(sheet), batch(std::move(renames)) {}

    void build();
    QWidget *buildEditing();
    void buildTable();
    QLayout *buildNote();
    void buildButtons();
    void connectAll();

    void refresh();
    void refreshNote();
    void refreshProgress();
    QString whyNot() const;
    void followForm();
    void takeFields();
    void tellPlaces();
    void primary();

    BatchRenameSheet &q;
    const std::shared_ptr<BatchRename> batch;
    QTimer pause;
    BatchRenameForm *form = nullptr;
    BatchRenameRows *rows = nullptr;
    QTreeView *table = nullptr;
    TextLabel *changing = nullptr;
    TextLabel *note = nullptr;
    QPushButton *showConflict = nullptr;
    QProgressBar *progress = nullptr;
    EmptyState *result = nullptr;
    QStackedLayout *pages = nullptr;
    QPushButton *cancel = nullptr;
    QPushButton *rename = nullptr;
    QPushButton *undo = nullptr;
    QPushButton *finish = nullptr;
};

BatchRenameSheet::BatchRenameSheet(std::unique_ptr<BatchRename> batch, QWidget *window)
    : SheetFrame(QStringLiteral("%1 umbenennen").arg(entriesText(batch->urls().size())), {}, wantedSize, window)
    , d(std::make_unique<Private>(*this, std::move(batch)))
{
    setObjectName(QStringLiteral("batchRenameSheet"));
    d->build();
    d->connectAll();
    d->refresh();
}

BatchRenameSheet::~BatchRenameSheet() = default;

void BatchRenameSheet::begin()
{
    open();
    d->form->focusFirstField();
}

/// If renaming is in progress, the sheet first undoes it and then closes.
bool BatchRenameSheet::isRenaming() const
{
    return d->batch->running.get();
}

void BatchRenameSheet::escape()
{
    if (d->batch->running.get())
        d->batch->cancel();
    else
        close();
}

void BatchRenameSheet::Private::build()
{
    pages = new QStackedLayout;
    pages->addWidget(buildEditing());
    result = new EmptyState(QStringLiteral("circle-check"), {}, {}, &q);
    result->setObjectName(QStringLiteral("renameResult"));
    pages->addWidget(result);
    q.content()->addLayout(pages, 1);
    buildButtons();
}

QWidget *BatchRenameSheet::Private::buildEditing()
{
    auto *const editing = new QWidget(&q);
    auto *const column = new QVBoxLayout(editing);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(scaled(8));
    form = new BatchRenameForm(batch->fields.get(), editing);
    column->addWidget(form);
    auto *const head = new QHBoxLayout;
    head->addWidget(makeHeading(QStringLiteral("Vorschau"), editing));
    head->addStretch(1);
    changing = new TextLabel({}, Token::Secondary, 0.92, QFont::Normal, editing);
    changing->setObjectName(QStringLiteral("renameChanging"));
    head->addWidget(changing);
    column->addSpacing(scaled(4));
    column->addLayout(head);
    buildTable();
    column->addWidget(table, 1);
    progress = new QProgressBar(editing);
    progress->setObjectName(QStringLiteral("renameProgress"));
    progress->setTextVisible(false);
    QSizePolicy policy = progress->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    progress->setSizePolicy(policy);
    column->addWidget(progress);
    column->addLayout(buildNote());
    return editing;
}

void BatchRenameSheet::Private::buildTable()
{
    rows = new BatchRenameRows(batch, &q);
    table = new QTreeView(&q);
    table->setObjectName(QStringLiteral("renamePreview"));
    table->setAccessibleName(QStringLiteral("Vorschau"));
    table->setModel(rows);
    dressTable(*table);
    table->setItemDelegate(new BatchRenameRowDelegate(table));
    table->setSortingEnabled(false); // numbering follows the order on display
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setContextMenuPolicy(Qt::NoContextMenu);
    table->setMinimumHeight(scaled(150));
    table->header()->setSectionResizeMode(QHeaderView::Stretch);
}

QLayout *BatchRenameSheet::Private::buildNote()
{
    auto *const row = new QHBoxLayout;
    note = makeBody({}, &q);
    note->setObjectName(QStringLiteral("renameNote"));
    note->setMinimumHeight(scaled(32));
    note->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    showConflict =
        makeButton(QStringLiteral("Stelle zeigen"), ButtonKind::Link, QStringLiteral("renameShowConflict"), &q);
    row->addWidget(note, 1);
    row->addWidget(showConflict, 0, Qt::AlignVCenter);
    return row;
}

void BatchRenameSheet::Private::buildButtons()
{
    cancel = makeButton(QStringLiteral("Abbrechen"), ButtonKind::Usual, QStringLiteral("renameCancel"), &q);
    rename = makeButton(QStringLiteral("Umbenennen"), ButtonKind::Primary, QStringLiteral("renameStartButton"), &q);
    undo = makeButton(QStringLiteral("Umbenennen rückgängig"), ButtonKind::Usual, QStringLiteral("renameUndo"), &q,
                      QStringLiteral("undo-2"));
    finish = makeButton(QStringLiteral("Fertig"), ButtonKind::Primary, QStringLiteral("renameFinish"), &q);
    for (QPushButton *const button : {cancel, undo, rename, finish})
        q.buttons()->addWidget(button);
}

void BatchRenameSheet::Private::connectAll()
{
    pause.setSingleShot(true);
    connect(&pause, &QTimer::timeout, &q, [this] { takeFields(); });
    connect(form, &BatchRenameForm::changed, &q, [this] { followForm(); });
    connect(cancel, &QPushButton::clicked, &q, [this] { q.escape(); });
    connect(rename, &QPushButton::clicked, &q, [this] { primary(); });
    connect(undo, &QPushButton::clicked, &q, [this] { batch->undo(); });
    connect(finish, &QPushButton::clicked, &q, [this] { q.close(); });
    connect(showConflict, &QPushButton::clicked, &q, [this] {
        table->setCurrentIndex(rows->firstConflict());
        table->scrollTo(rows->firstConflict(), QAbstractItemView::PositionAtCenter);
    });
    batch->preview.observe(&q, [this](const auto &) { refresh(); });
    batch->reading.observe(&q, [this](bool) { refresh(); });
    batch->running.observe(&q, [this](bool) { refresh(); });
    batch->progress.observe(&q, [this](const auto &) { refreshProgress(); });
    batch->error.observe(&q, [this](const auto &) { refresh(); });
    batch->status.observe(&q, [this](const auto &) { refresh(); });
    batch->done.observe(&q, [this](const auto &) {
        refresh();
        tellPlaces();
        if (q.isVisible())
            (batch->done.get().empty() ? rename : finish)->setFocus(Qt::OtherFocusReason);
    });
}

QString BatchRenameSheet::Private::whyNot() const
{
    if (batch->running.get())
        return QStringLiteral("Es wird gerade umbenannt.");
    if (batch->reading.get())
        return QStringLiteral("Namen und Daten werden noch gelesen.");
    if (batch->preview.get().error)
        return *batch->preview.get().error;
    return batch->canStart() ? QString() : QStringLiteral("Kein Name ändert sich.");
}

void BatchRenameSheet::Private::refresh()
{
    const bool running = batch->running.get();
    const bool done = !batch->done.get().empty();
    pages->setCurrentIndex(done ? 1 : 0);
    result->setSymbol(QStringLiteral("circle-check"), Token::Success);
    result->setTexts(batch->status.get(), batch->error.get().value_or(QString()));
    form->setEnabled(!running);
    rename->setEnabled(batch->canStart());
    rename->setToolTip(whyNot());
    undo->setEnabled(!running);
    undo->setToolTip(running ? QStringLiteral("Es wird gerade zurückbenannt.")
                             : QStringLiteral("Gibt jedem Element seinen alten Namen zurück"));
    for (QPushButton *const button : {undo, finish})
        button->setVisible(done);
    rename->setVisible(!done);
    cancel->setVisible(!done || running);
    finish->setEnabled(!running);
    const auto changes = std::ranges::count_if(batch->preview.get().rows, &BatchRenameRow::changes);
    changing->setText(QStringLiteral("%1 von %2 ändern sich")
                          .arg(german().toString(static_cast<qlonglong>(changes)),
                               german().toString(static_cast<qlonglong>(batch->urls().size()))));
    refreshNote();
    refreshProgress();
}

/// Priority: what failed, then conflicts, then what was done.
void BatchRenameSheet::Private::refreshNote()
{
    const bool conflict = batch->preview.get().error.has_value();
    showConflict->setVisible(conflict && !batch->running.get());
    const bool failed = batch->error.get().has_value();
    note->setToken(failed || conflict ? Token::Danger : Token::Secondary);
    if (failed)
        note->setText(*batch->error.get());
    else if (conflict || batch->running.get() || batch->reading.get())
        note->setText(whyNot());
    else
        note->setText(batch->status.get().isEmpty() ? whyNot() : batch->status.get());
}

void BatchRenameSheet::Private::refreshProgress()
{
    progress->setVisible(batch->running.get() || batch->reading.get());
    progress->setAccessibleName(whyNot());
    const std::optional<double> share = batch->progress.get();
    progress->setRange(0, share ? 1000 : 0);
    progress->setValue(share ? static_cast<int>(*share * 1000) : 0);
}

void BatchRenameSheet::Private::followForm()
{
    if (batch->urls().size() < manyEntries)
        takeFields();
    else
        pause.start(typingPause);
}

/// Called before starting too, so that input within the typing pause is not lost.
void BatchRenameSheet::Private::takeFields()
{
    pause.stop();
    if (form->fields() != batch->fields.get())
        batch->setFields(form->fields());
}

void BatchRenameSheet::Private::tellPlaces()
{
    std::vector<Location> places;
    std::ranges::transform(batch->done.get(), std::back_inserter(places), &UserAction::Entry::to);
    Q_EMIT q.renamed(places.empty() ? batch->urls() : places);
}

void BatchRenameSheet::Private::primary()
{
    if (finish->isVisible()) {
        finish->click();
        return;
    }
    takeFields();
    batch->start();
}

void BatchRenameSheet::confirm()
{
    d->primary();
}

} // namespace brellin
