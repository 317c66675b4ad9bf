#include "App/Window/ApplicationSheet.h"

#include "Look/Buttons.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>

namespace brellin {

namespace {

constexpr int identifierRole = Qt::UserRole;

/// From the icon theme or a file.
QIcon iconOf(const Application &application)
{
    const QIcon plain = Symbols::icon(QStringLiteral("app-window"));
    if (!application.icon.startsWith(u'/'))
        return QIcon::fromTheme(application.icon, plain);
    const QIcon own(application.icon);
    return own.isNull() ? plain : own;
}

} // namespace

ApplicationSheet::ApplicationSheet(const QString &name, const QString &kind, QWidget *window)
    : SheetFrame(QStringLiteral("„%1“ öffnen mit").arg(name), {}, {480, 540}, window)
    , m_search(new QLineEdit(this))
    , m_list(new QListWidget(this))
    , m_always(new QCheckBox(QStringLiteral("Immer mit diesem Programm"), this))
{
    setObjectName(QStringLiteral("applicationSheet"));
    m_search->setObjectName(QStringLiteral("applicationSearch"));
    m_search->setPlaceholderText(QStringLiteral("Programm suchen"));
    m_search->setAccessibleName(QStringLiteral("Programm suchen"));
    m_search->addAction(Symbols::icon(QStringLiteral("search"), Token::Secondary), QLineEdit::LeadingPosition);
    m_search->installEventFilter(this);
    m_list->setObjectName(QStringLiteral("applications"));
    m_list->setAccessibleName(QStringLiteral("Programme"));
    m_list->setIconSize({scaled(20), scaled(20)});
    m_always->setObjectName(QStringLiteral("always"));
    m_always->setToolTip(kind.isEmpty() ? QStringLiteral("Die Art dieser Datei ist nicht bekannt.")
                                        : QStringLiteral("Gilt für alle Dateien der Art „%1“.").arg(kind));
    m_always->setEnabled(!kind.isEmpty());
    content()->addWidget(m_search);
    content()->addWidget(m_list, 1);
    content()->addWidget(m_always);
    QPushButton *const cancel =
        makeButton(QStringLiteral("Abbrechen"), ButtonKind::Usual, QStringLiteral("cancel"), this);
    m_open = makeButton(QStringLiteral("Öffnen"), ButtonKind::Primary, QStringLiteral("accept"), this);
    buttons()->addWidget(cancel);
    buttons()->addWidget(m_open);
    connect(m_search, &QLineEdit::textChanged, this, &ApplicationSheet::filter);
    connect(m_list, &QListWidget::itemDoubleClicked, this, &ApplicationSheet::choose);
    connect(cancel, &QPushButton::clicked, this, &ApplicationSheet::close);
    connect(m_open, &QPushButton::clicked, this, &ApplicationSheet::choose);
    filter({});
}

void ApplicationSheet::offer(const std::vector<Application> &applications)
{
    m_list->clear();
    for (const Application &one : applications) {
        auto *const item = new QListWidgetItem(iconOf(one), one.name, m_list);
        item->setData(identifierRole, one.identifier);
        item->setSizeHint({0, scaled(30)});
    }
    filter(m_search->text());
    m_search->setFocus();
}

/// The first match becomes current.
void ApplicationSheet::filter(const QString &text)
{
    QListWidgetItem *first = nullptr;
    for (int row = 0; row < m_list->count(); ++row) {
        QListWidgetItem *const item = m_list->item(row);
        item->setHidden(!item->text().contains(text.trimmed(), Qt::CaseInsensitive));
        if (!first && !item->isHidden())
            first = item;
    }
    m_list->setCurrentItem(first);
    m_open->setEnabled(first != nullptr);
}

void ApplicationSheet::choose()
{
    const QListWidgetItem *const item = m_list->currentItem();
    if (!item || item->isHidden())
        return;
    const QString identifier = item->data(identifierRole).toString();
    const bool always = m_always->isChecked();
    close();
    Q_EMIT chosen(identifier, always);
}

/// The arrows in the search move in the list.
bool ApplicationSheet::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_search && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Down || key == Qt::Key_Up || key == Qt::Key_PageDown || key == Qt::Key_PageUp) {
            QCoreApplication::sendEvent(m_list, event);
            return true;
        }
    }
    return SheetFrame::eventFilter(watched, event);
}

} // namespace brellin
