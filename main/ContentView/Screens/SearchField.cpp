#include "ContentView/Screens/SearchField.h"

#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QAction>
#include <QKeyEvent>

namespace brellin {

SearchField::SearchField(const KnownFolders &folders, QWidget *parent)
    : QLineEdit(parent)
    , m_folders(folders)
    , m_symbol(addAction(Symbols::icon(QStringLiteral("search"), Token::Secondary), QLineEdit::LeadingPosition))
    , m_clear(addAction(Symbols::icon(QStringLiteral("x"), Token::Secondary), QLineEdit::TrailingPosition))
{
    setObjectName(QStringLiteral("searchField"));
    setProperty("kind", QStringLiteral("search"));
    // The texts are the buttons' names for screen readers.
    m_symbol->setText(QStringLiteral("Suchen"));
    m_clear->setText(QStringLiteral("Suche beenden"));
    m_clear->setToolTip(m_clear->text());
    connect(m_clear, &QAction::triggered, this, &SearchField::endSearch);
    connect(this, &QLineEdit::textEdited, this, [this](const QString &typed) {
        if (m_pane)
            m_pane->setSearchText(typed);
    });
    showState();
}

QSize SearchField::sizeHint() const
{
    return {scaled(210), scaled(32)};
}

void SearchField::setPane(BrowserModel *pane)
{
    m_pane = pane;
    m_following = std::make_unique<QObject>();
    if (pane) {
        pane->searchText.observe(m_following.get(), [this](const QString &text) {
            if (text != this->text())
                setText(text);
            showState();
        });
        pane->searchRunning.observe(m_following.get(), [this](bool) { showState(); });
        pane->current.observe(m_following.get(), [this](const Location &) { showState(); });
        pane->searchTerms.observe(m_following.get(), [this](const SearchTerms &) { showState(); });
        setText(pane->searchText.get());
    }
    showState();
}

void SearchField::showState()
{
    const QString title = m_pane ? m_folders.title(m_pane->current.get()) : QString();
    const bool searchable = m_pane && isEnabled();
    const bool contents = m_pane && m_pane->searchTerms.get().contents;
    const QString wish = contents ? QStringLiteral("Inhalte in „%1“ suchen") : QStringLiteral("In „%1“ suchen");
    setPlaceholderText(searchable ? wish.arg(title) : QStringLiteral("Suchen"));
    setAccessibleName(placeholderText());
    const bool running = m_pane && m_pane->searchRunning.get();
    m_symbol->setIcon(Symbols::icon(running ? QStringLiteral("loader-circle") : QStringLiteral("search"),
                                    running ? Token::Accent : Token::Secondary));
    m_symbol->setToolTip(running ? QStringLiteral("Die Suche läuft …") : QString());
    m_clear->setVisible(!text().isEmpty());
}

bool SearchField::focusNextPrevChild(bool next)
{
    if (!next || !m_pane || !m_pane->searching.get())
        return QLineEdit::focusNextPrevChild(next);
    Q_EMIT wentOn();
    return true;
}

/// Disabled while a page is shown instead of a folder.
void SearchField::changeEvent(QEvent *event)
{
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::EnabledChange)
        showState();
}

/// Empties the field and puts the folder back at once.
void SearchField::endSearch()
{
    clear();
    if (!m_pane)
        return;
    m_pane->setSearchText({});
    m_pane->runSearch();
    m_pane->setSearchTerms({});
}

void SearchField::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        if (m_pane && m_pane->clearSearchFilters())
            return;
        endSearch();
        Q_EMIT left();
    } else if (event->key() == Qt::Key_Down) {
        Q_EMIT wentDown();
    } else if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && m_pane) {
        m_pane->runSearch();
    } else {
        QLineEdit::keyPressEvent(event);
    }
}

} // namespace brellin
