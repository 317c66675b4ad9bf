#include "App/Window/ShortcutSheet.h"

#include "Look/Buttons.h"
#include "Look/Cards.h"
#include "Look/Labels.h"
#include "Look/TableDelegate.h"
#include "Look/Theme.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QTreeWidget>

#include <algorithm>

namespace brellin {

namespace {

/// The key of an event as QKeySequence stores it: Shift counts only where it does not make the character typed.
QKeySequence keyOf(const QKeyEvent &event)
{
    Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    const QChar typed = event.text().isEmpty() ? QChar() : event.text().front();
    if (typed.isPrint() && !typed.isLetterOrNumber() && !typed.isSpace())
        modifiers &= ~Qt::ShiftModifier;
    return QKeySequence(QKeyCombination(modifiers, static_cast<Qt::Key>(event.key())));
}

bool isModifier(int key)
{
    return key == Qt::Key_Control || key == Qt::Key_Shift || key == Qt::Key_Alt || key == Qt::Key_Meta ||
           key == Qt::Key_AltGr || key == Qt::Key_unknown || key == 0;
}

QString allKeysText(const Shortcuts::Keys &keys)
{
    QStringList texts;
    for (const QKeySequence &key : keys)
        texts << keyText(key);
    return texts.join(QStringLiteral(" oder "));
}

} // namespace

KeyField::KeyField(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("keyField"));
    setAccessibleName(QStringLiteral("Neue Taste"));
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
}

void KeyField::setText(const QString &text)
{
    m_text = text;
    update();
}

QSize KeyField::sizeHint() const
{
    return {scaled(220), scaled(32)};
}

/// Takes Tab and the shortcuts of the window too.
bool KeyField::event(QEvent *event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        update();
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride)
        return QWidget::event(event);
    event->accept();
    const auto *const key = static_cast<QKeyEvent *>(event);
    if (event->type() == QEvent::ShortcutOverride || isModifier(key->key()))
        return true;
    if (key->key() == Qt::Key_Escape && key->modifiers() == Qt::NoModifier)
        Q_EMIT left();
    else
        Q_EMIT typed(keyOf(*key));
    return true;
}

void KeyField::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintBox(painter, rect(), Token::Content);
    if (hasFocus()) {
        painter.setPen(QPen(color(Token::Accent), 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 6, 6);
    }
    const QString hint = hasFocus() ? QStringLiteral("Taste drücken … (Esc: lassen)") : QStringLiteral("Keine Taste");
    const bool shows = !hasFocus() && !m_text.isEmpty();
    painter.setFont(sizedFont());
    painter.setPen(color(!isEnabled() ? Token::Tertiary : shows ? Token::Text : Token::Secondary));
    const QRect place = rect().adjusted(scaled(10), 0, -scaled(10), 0);
    painter.drawText(place, Qt::AlignVCenter | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(shows ? m_text : hint, Qt::ElideRight, place.width()));
}

ShortcutSheet::ShortcutSheet(Shortcuts &shortcuts, QWidget *window)
    : SheetFrame(QStringLiteral("Tastenkürzel"), QStringLiteral("Alle Befehle und ihre Tasten."), {640, 620}, window)
    , m_shortcuts(shortcuts)
    , m_search(new QLineEdit(this))
    , m_table(new QTreeWidget(this))
    , m_field(new KeyField(this))
    , m_remove(makeButton(QStringLiteral("Ohne Taste"), ButtonKind::Usual, QStringLiteral("removeKey"), this))
    , m_reset(makeButton(QStringLiteral("Zurücksetzen"), ButtonKind::Usual, QStringLiteral("resetKey"), this))
    , m_resetAll(makeButton(QStringLiteral("Alle zurücksetzen"), ButtonKind::Usual, QStringLiteral("resetKeys"), this))
    , m_refusal(makeBody({}, this))
{
    setObjectName(QStringLiteral("shortcutSheet"));
    build();
    buildChanging();
    fill();
    shortcuts.own.observe(this, [this](const auto &) { fill(); });
}

void ShortcutSheet::build()
{
    m_search->setObjectName(QStringLiteral("shortcutSearch"));
    m_search->setPlaceholderText(QStringLiteral("Befehl oder Taste suchen"));
    m_search->setAccessibleName(m_search->placeholderText());
    m_search->setClearButtonEnabled(true);
    connect(m_search, &QLineEdit::textChanged, this, [this] { fill(); });
    content()->addWidget(m_search);
    m_table->setObjectName(QStringLiteral("shortcutTable"));
    m_table->setAccessibleName(QStringLiteral("Befehle"));
    m_table->setHeaderLabels({QStringLiteral("Befehl"), QStringLiteral("Menü"), QStringLiteral("Tasten")});
    dressTable(*m_table);
    m_table->setSortingEnabled(false);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_table->header()->resizeSection(1, scaled(100));
    m_table->header()->resizeSection(2, scaled(210));
    connect(m_table, &QTreeWidget::currentItemChanged, this, [this] { showCurrent(); });
    connect(m_table, &QTreeWidget::itemDoubleClicked, this, [this] { m_field->setFocus(); });
    content()->addWidget(m_table, 1);
}

void ShortcutSheet::buildChanging()
{
    auto *const row = new QHBoxLayout;
    row->setSpacing(scaled(8));
    row->addWidget(makeBody(QStringLiteral("Neue Taste:"), this), 0, Qt::AlignVCenter);
    row->addWidget(m_field, 1);
    row->addWidget(m_remove);
    row->addWidget(m_reset);
    content()->addLayout(row);
    m_refusal->setObjectName(QStringLiteral("keyRefusal"));
    m_refusal->setToken(Token::Danger);
    content()->addWidget(m_refusal);
    buttons()->insertWidget(0, m_resetAll);
    QPushButton *const done = makeButton(QStringLiteral("Fertig"), ButtonKind::Primary, QStringLiteral("done"), this);
    buttons()->addWidget(done);
    connect(done, &QAbstractButton::clicked, this, &SheetFrame::close);
    connect(m_field, &KeyField::typed, this, [this](const QKeySequence &key) {
        if (const std::optional<CommandId> id = current())
            take(m_shortcuts.setKey(*id, key));
    });
    connect(m_field, &KeyField::left, m_table, [this] { m_table->setFocus(); });
    connect(m_remove, &QAbstractButton::clicked, this, [this] { take(m_shortcuts.removeKeys(*current())); });
    connect(m_reset, &QAbstractButton::clicked, this, [this] { take(m_shortcuts.reset(*current())); });
    connect(m_resetAll, &QAbstractButton::clicked, this, [this] { take(m_shortcuts.resetAll()); });
}

/// The commands that match the search; keeps the current one.
void ShortcutSheet::fill()
{
    const std::optional<CommandId> before = current();
    const QString wanted = m_search->text().trimmed();
    m_table->clear();
    for (const WindowCommand &one : commandTable()) {
        const QStringList texts{one.title, titleOf(one.group), allKeysText(m_shortcuts.keysOf(one.id))};
        if (std::ranges::none_of(texts,
                                 [&](const QString &text) { return text.contains(wanted, Qt::CaseInsensitive); }))
            continue;
        auto *const line = new QTreeWidgetItem(m_table, texts);
        line->setData(0, Qt::UserRole, static_cast<int>(one.id));
        if (one.id == before)
            m_table->setCurrentItem(line);
    }
    if (!m_table->currentItem())
        m_table->setCurrentItem(m_table->topLevelItem(0));
    showCurrent();
}

std::optional<CommandId> ShortcutSheet::current() const
{
    const QTreeWidgetItem *const line = m_table->currentItem();
    return line ? std::optional(static_cast<CommandId>(line->data(0, Qt::UserRole).toInt())) : std::nullopt;
}

void ShortcutSheet::showCurrent()
{
    const std::optional<CommandId> id = current();
    m_field->setText(id ? allKeysText(m_shortcuts.keysOf(*id)) : QString());
    m_field->setEnabled(id.has_value());
    m_remove->setEnabled(id && !m_shortcuts.keysOf(*id).empty());
    m_reset->setEnabled(id && m_shortcuts.keysOf(*id) != windowCommand(*id).keys);
    m_resetAll->setEnabled(!m_shortcuts.own.get().empty());
    m_refusal->setText({});
}

void ShortcutSheet::take(const Result<void> &changed)
{
    if (changed)
        m_table->setFocus();
    m_refusal->setText(changed ? QString() : changed.error().message);
}

void ShortcutSheet::confirm()
{
    if (current())
        m_field->setFocus();
}

} // namespace brellin
