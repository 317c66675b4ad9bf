#include "Features/Screens/PreviewCard.h"

#include "Features/Screens/PreviewBodies.h"
#include "Features/Screens/PreviewCanvas.h"
#include "Look/Labels.h"

#include <QResizeEvent>
#include <QStackedWidget>
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
    , m_text(new PreviewTextView(0.85, m_stack))
    , m_list(new PreviewArchiveList(0.92, m_stack))
    , m_remark(makeSecondary({}, this))
{
    setObjectName(QStringLiteral("vorschau.karte"));
    m_text->setObjectName(QStringLiteral("vorschau.text"));
    m_list->setObjectName(QStringLiteral("vorschau.archiv"));
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
}

void PreviewCard::setContent(const PreviewContent &content)
{
    m_patience.stop();
    m_canvas->setRemark({});
    m_remark->setText(remarkOf(content.body));
    m_remark->setVisible(!m_remark->text().isEmpty());
    if (content.state == PreviewContent::State::Loading)
        m_patience.start(untilLoadingIsSaid);
    if (const auto *text = std::get_if<PreviewText>(&content.body)) {
        m_text->showText(*text);
        m_stack->setCurrentWidget(m_text);
    } else if (const auto *archive = std::get_if<PreviewArchive>(&content.body)) {
        m_list->showArchive(*archive);
        m_stack->setCurrentWidget(m_list);
    } else {
        showCanvas(content);
    }
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
