#include "ContentView/Screens/SearchBar.h"

#include "Look/Buttons.h"
#include "Look/Theme.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>

namespace brellin {

namespace {

constexpr int wideBar = 540;

/// In the order of SearchFilters::Kind, ::Age and ::Size.
QStringList kindTexts()
{
    return {QStringLiteral("Alle Arten"), QStringLiteral("Ordner"),  QStringLiteral("Bilder"),
            QStringLiteral("Videos"),     QStringLiteral("Musik"),   QStringLiteral("PDF"),
            QStringLiteral("Dokumente"),  QStringLiteral("Archive"), QStringLiteral("Programme"),
            QStringLiteral("Sonstige")};
}

QStringList ageTexts()
{
    return {QStringLiteral("Jedes Datum"),    QStringLiteral("Heute"),        QStringLiteral("Letzte 7 Tage"),
            QStringLiteral("Letzte 30 Tage"), QStringLiteral("Letztes Jahr"), QStringLiteral("Älter als ein Jahr")};
}

QStringList sizeTexts()
{
    return {QStringLiteral("Jede Größe"), QStringLiteral("Unter 1 MB"), QStringLiteral("Ab 1 MB"),
            QStringLiteral("Ab 10 MB"),   QStringLiteral("Ab 100 MB"),  QStringLiteral("Ab 1 GB")};
}

} // namespace

SearchBar::SearchBar(BrowserModel &pane, QWidget *parent) : QWidget(parent), m_pane(pane)
{
    setObjectName(QStringLiteral("searchBar"));
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(scaled(14), scaled(6), scaled(8), scaled(7));
    row->setSpacing(scaled(8));
    m_kind = addChoice(QStringLiteral("Art"), QStringLiteral("searchKind"), kindTexts());
    m_age = addChoice(QStringLiteral("Geändert"), QStringLiteral("searchAge"), ageTexts());
    m_size = addChoice(QStringLiteral("Größe"), QStringLiteral("searchSize"), sizeTexts());
    m_contents = new QCheckBox(QStringLiteral("Auch in Inhalten"), this);
    m_contents->setObjectName(QStringLiteral("searchContents"));
    m_contents->setToolTip(QStringLiteral("Durchsucht auch, was in Textdateien und PDFs steht"));
    connect(m_contents, &QCheckBox::clicked, this, &SearchBar::choose);
    row->addWidget(m_contents);
    row->addStretch(1);
    m_clear = makeButton(QStringLiteral("Filter löschen"), ButtonKind::Link, QStringLiteral("clearFilters"), this);
    connect(m_clear, &QAbstractButton::clicked, this, [this] {
        m_kind->setFocus(); // the button goes
        m_pane.clearSearchFilters();
    });
    row->addWidget(m_clear);
    setFocusProxy(m_kind);
    pane.searchTerms.observe(this, [this](const SearchTerms &) { showState(); });
    pane.searching.observe(this, [this](bool) { showState(); });
    showState();
}

QComboBox *SearchBar::addChoice(const QString &title, const QString &objectName, const QStringList &texts)
{
    auto *const choice = new QComboBox(this);
    choice->setObjectName(objectName);
    choice->setAccessibleName(title);
    choice->addItems(texts);
    choice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    choice->setMinimumContentsLength(8);
    choice->setMinimumWidth(scaled(64));
    connect(choice, &QComboBox::activated, this, &SearchBar::choose);
    layout()->addWidget(choice);
    return choice;
}

void SearchBar::choose()
{
    const SearchFilters filters{static_cast<SearchFilters::Kind>(m_kind->currentIndex()),
                                static_cast<SearchFilters::Age>(m_age->currentIndex()),
                                static_cast<SearchFilters::Size>(m_size->currentIndex())};
    m_pane.setSearchTerms({filters, m_contents->isChecked()});
}

void SearchBar::showState()
{
    const SearchTerms &terms = m_pane.searchTerms.get();
    m_kind->setCurrentIndex(static_cast<int>(terms.filters.kind));
    m_age->setCurrentIndex(static_cast<int>(terms.filters.age));
    m_size->setCurrentIndex(static_cast<int>(terms.filters.size));
    m_contents->setChecked(terms.contents);
    m_clear->setVisible(terms.filters.narrow() && width() >= scaled(wideBar));
    setVisible(m_pane.searching.get() || terms != SearchTerms());
}

QSize SearchBar::minimumSizeHint() const
{
    return {scaled(200), QWidget::minimumSizeHint().height()};
}

/// A narrow pane has no room for the button.
void SearchBar::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    showState();
}

void SearchBar::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier)
        Q_EMIT escaped();
    else
        QWidget::keyPressEvent(event);
}

void SearchBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), color(Token::Window));
    painter.fillRect(QRect(0, height() - 1, width(), 1), color(Token::Line));
}

} // namespace brellin
