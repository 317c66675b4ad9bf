#include "Features/Screens/PreviewCard.h"

#include "Base/German.h"
#include "Features/Screens/PreviewCanvas.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QFontDatabase>
#include <QHeaderView>
#include <QPlainTextEdit>
#include <QResizeEvent>
#include <QStackedWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <array>

namespace brellin {

namespace {

using namespace std::chrono_literals;

constexpr double heightShare = 1.06;
constexpr auto untilLoadingIsSaid = 300ms;
constexpr auto untilSizeIsSettled = 200ms;
/// Fixed sizes, so that resizing does not request a new picture for every pixel.
constexpr std::array sides{256, 512, 768, 1024, 1536, 2048, 3072, 4096};

} // namespace

PreviewCard::PreviewCard(QWidget *parent)
    : Card(parent)
    , m_stack(new QStackedWidget(this))
    , m_canvas(new PreviewCanvas(m_stack))
    , m_text(new QPlainTextEdit(m_stack))
    , m_list(new QTreeWidget(m_stack))
    , m_remark(makeSecondary({}, this))
{
    setObjectName(QStringLiteral("vorschau.karte"));
    buildText();
    buildList();
    m_stack->addWidget(m_canvas);
    m_stack->addWidget(m_text);
    m_stack->addWidget(m_list);
    content()->addWidget(m_stack, 1);
    content()->addWidget(m_remark);
    m_remark->hide();
    m_patience.setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this, [this] { m_canvas->setRemark(QStringLiteral("Wird geladen …")); });
    m_settling.setSingleShot(true);
    connect(&m_settling, &QTimer::timeout, this, &PreviewCard::tellSide);
    connect(&Theme::shared(), &Theme::changed, this, &PreviewCard::dress);
    dress();
}

void PreviewCard::buildText()
{
    m_text->setObjectName(QStringLiteral("vorschau.text"));
    m_text->setAccessibleName(QStringLiteral("Text der Datei"));
    m_text->setReadOnly(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_text->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    m_text->setTabChangesFocus(true);
}

void PreviewCard::buildList()
{
    m_list->setObjectName(QStringLiteral("vorschau.archiv"));
    m_list->setAccessibleName(QStringLiteral("Inhalt des Archivs"));
    m_list->setColumnCount(2);
    m_list->setHeaderHidden(true);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setSelectionMode(QAbstractItemView::NoSelection);
    m_list->setTextElideMode(Qt::ElideLeft); // the end of a path matters most
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
}

void PreviewCard::dress()
{
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fixed.setPointSizeF(sizedFont(0.85).pointSizeF());
    m_text->setFont(fixed);
    m_list->setFont(sizedFont(0.92));
    const QString bare = QStringLiteral("%1 { border: 2px solid transparent; background: transparent; padding: 0; } "
                                        "%1:focus { border: 2px solid %2; border-radius: 6px; padding: 0; }");
    const QString accent = color(Token::Accent).name();
    m_text->setStyleSheet(bare.arg(QStringLiteral("QPlainTextEdit"), accent));
    m_list->setStyleSheet(bare.arg(QStringLiteral("QTreeWidget"), accent));
}

void PreviewCard::setContent(const PreviewContent &content)
{
    m_patience.stop();
    m_canvas->setRemark({});
    m_remark->hide();
    if (content.state == PreviewContent::State::Loading)
        m_patience.start(untilLoadingIsSaid);
    if (const auto *text = std::get_if<PreviewText>(&content.body))
        showText(*text);
    else if (const auto *archive = std::get_if<PreviewArchive>(&content.body))
        showArchive(*archive);
    else
        showCanvas(content);
}

void PreviewCard::showText(const PreviewText &text)
{
    if (m_text->toPlainText() != text.text)
        m_text->setPlainText(text.text);
    m_remark->setText(QStringLiteral("Nur der Anfang wird gezeigt."));
    m_remark->setVisible(text.cutOff);
    m_stack->setCurrentWidget(m_text);
}

void PreviewCard::showArchive(const PreviewArchive &archive)
{
    m_list->clear();
    QList<QTreeWidgetItem *> rows;
    rows.reserve(static_cast<qsizetype>(archive.entries.size()));
    for (const PreviewArchiveEntry &entry : archive.entries) {
        auto *const row = new QTreeWidgetItem({entry.name, entry.size ? sizeText(*entry.size) : QString()});
        row->setToolTip(0, entry.name);
        row->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
        row->setForeground(1, palette().color(QPalette::PlaceholderText));
        rows.append(row);
    }
    m_list->addTopLevelItems(rows);
    m_remark->setText(archive.remark);
    m_remark->setVisible(!archive.remark.isEmpty());
    m_stack->setCurrentWidget(m_list);
}

void PreviewCard::showCanvas(const PreviewContent &content)
{
    m_canvas->setContent(content);
    if (const auto *nothing = std::get_if<PreviewNothing>(&content.body))
        m_canvas->setRemark(content.state == PreviewContent::State::Failed ? content.failure : nothing->reason);
    m_stack->setCurrentWidget(m_canvas);
}

void PreviewCard::fitHeight()
{
    const int reach = 2 * shadowReach();
    setFixedHeight(static_cast<int>((width() - reach) * heightShare) + reach);
}

void PreviewCard::resizeEvent(QResizeEvent *event)
{
    Card::resizeEvent(event);
    if (event->oldSize().width() != width())
        fitHeight();
    m_settling.start(untilSizeIsSettled);
}

void PreviewCard::tellSide()
{
    const double wanted = std::max(m_stack->width(), m_stack->height()) * devicePixelRatioF();
    const auto *const fitting = std::ranges::find_if(sides, [wanted](int side) { return side >= wanted; });
    const int side = fitting == sides.end() ? sides.back() : *fitting;
    if (side == m_side)
        return;
    m_side = side;
    Q_EMIT sideWanted(side);
}

} // namespace brellin
