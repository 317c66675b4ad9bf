#include "PhotoViewer/Screens/LargeView.h"

#include "Features/PreviewLoader.h"
#include "Features/Screens/PreviewBodies.h"
#include "Features/Screens/ThumbnailPixels.h"
#include "Look/Cards.h"
#include "Look/FocusRing.h"
#include "Look/Theme.h"
#include "PhotoViewer/Screens/EntryCard.h"
#include "PhotoViewer/Screens/LargeHead.h"
#include "PhotoViewer/Screens/PageRow.h"
#include "PhotoViewer/Screens/ZoomCanvas.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QPainter>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <array>

namespace brellin {

namespace {

using namespace std::chrono_literals;

constexpr auto untilLoadingIsSaid = 300ms;
constexpr double zoomStep = 1.25;
constexpr double moveStep = 80;
/// Fixed sizes, so that zooming does not request a new picture for every step.
constexpr std::array decodedSides{512, 1024, 1536, 2048, 3072, mostPictureSide};

int decodedSide(double wanted)
{
    const auto *const fitting = std::ranges::find_if(decodedSides, [wanted](int side) { return side >= wanted; });
    return fitting == decodedSides.end() ? decodedSides.back() : *fitting;
}

} // namespace

LargeView::LargeView(PreviewLoader &loader, QWidget *window, ThumbnailImages *thumbnails)
    : QWidget(window)
    , m_loader(loader)
    , m_head(new LargeHead(this))
    , m_pages(new PageRow(this))
{
    setObjectName(QStringLiteral("largeView"));
    setFocusPolicy(Qt::StrongFocus);
    hide();
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_head);
    column->addWidget(new Separator(Qt::Horizontal, this));
    buildBody(thumbnails);
    column->addWidget(m_stack, 1);
    column->addWidget(m_pages);
    connectAll();
}

void LargeView::buildBody(ThumbnailImages *thumbnails)
{
    m_stack = new QStackedWidget(this);
    m_canvas = new ZoomCanvas(m_stack);
    m_text = new PreviewTextView(1, m_stack);
    m_text->setObjectName(QStringLiteral("largeText"));
    m_list = new PreviewArchiveList(1, m_stack);
    m_list->setObjectName(QStringLiteral("largeArchive"));
    m_card = new EntryCard(thumbnails, m_stack);
    for (QWidget *const one : std::initializer_list<QWidget *>{m_canvas, m_text, m_list, m_card})
        m_stack->addWidget(one);
}

void LargeView::connectAll()
{
    connect(m_head, &LargeHead::left, this, &LargeView::close);
    connect(m_head, &LargeHead::beforeWanted, this, [this] { want(m_viewing.before); });
    connect(m_head, &LargeHead::afterWanted, this, [this] { want(m_viewing.after); });
    connect(m_head, &LargeHead::smallerWanted, this, [this] { m_canvas->zoomBy(1 / zoomStep); });
    connect(m_head, &LargeHead::largerWanted, this, [this] { m_canvas->zoomBy(zoomStep); });
    connect(m_head, &LargeHead::fitToggled, this,
            [this] { m_canvas->isFitted() ? m_canvas->showWhole() : m_canvas->fit(); });
    connect(m_head, &LargeHead::openWanted, this, [this] { Q_EMIT openRequested(m_viewing.entry); });
    connect(m_pages, &PageRow::backWanted, this, [this] { turnBy(-1); });
    connect(m_pages, &PageRow::onWanted, this, [this] { turnBy(1); });
    connect(m_canvas, &ZoomCanvas::scaled, this, [this] {
        showScale();
        askForSharpness();
    });
    m_patience.setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this, [this] {
        m_card->setRemark(QStringLiteral("Wird geladen …"));
        m_stack->setCurrentWidget(m_card);
    });
    m_loader.content.observe(this, [this](const PreviewContent &content) { showContent(content); });
    m_text->installEventFilter(this);
    m_list->installEventFilter(this);
    parentWidget()->installEventFilter(this);
}

void LargeView::open()
{
    setGeometry(parentWidget()->rect());
    if (isHidden()) {
        QWidget::show();
        raise();
        layout()->activate(); // so that the canvas has its size
    }
    setFocus();
}

void LargeView::show(const Viewing &viewing)
{
    setViewing(viewing);
    open();
    m_loader.setSide(fittingSide());
    m_loader.show(viewing.entry);
}

void LargeView::showSummary(const PreviewSummary &summary, const Location &first)
{
    setViewing({{}, {}, first, 0, summary.count});
    open();
    m_loader.show(std::nullopt);
    m_patience.stop();
    PreviewContent several;
    several.state = PreviewContent::State::Ready;
    several.summary = summarySize(summary);
    m_head->showContent(several);
    m_pages->showContent(several);
    showPicture(several);
    m_card->setSummary(summary);
    m_stack->setCurrentWidget(m_card);
}

void LargeView::setViewing(const Viewing &viewing)
{
    m_viewing = viewing;
    m_head->showViewing(viewing);
    setAccessibleName(QStringLiteral("Große Ansicht von „%1“").arg(shownName(viewing.entry)));
}

void LargeView::close()
{
    if (isHidden())
        return;
    hide();
    m_patience.stop();
    m_loader.show(std::nullopt);
    Q_EMIT closed();
}

const DecodedPicture *LargeView::picture() const
{
    if (const auto *picture = std::get_if<PreviewPicture>(&m_shown.body))
        return &picture->picture;
    const auto *page = std::get_if<PreviewPage>(&m_shown.body);
    return page ? &page->picture : nullptr;
}

void LargeView::showContent(const PreviewContent &content)
{
    m_patience.stop();
    if (content.state == PreviewContent::State::Empty)
        return;
    m_head->showContent(content);
    m_pages->showContent(content);
    m_card->setContent(content);
    showPicture(content);
    if (const auto *text = std::get_if<PreviewText>(&content.body)) {
        m_text->showText(*text);
        m_stack->setCurrentWidget(m_text);
    } else if (const auto *archive = std::get_if<PreviewArchive>(&content.body)) {
        m_list->showArchive(*archive);
        m_stack->setCurrentWidget(m_list);
    } else if (content.state == PreviewContent::State::Loading) {
        m_stack->setCurrentWidget(m_canvas);
        m_patience.start(untilLoadingIsSaid);
    } else {
        m_stack->setCurrentWidget(picture() ? static_cast<QWidget *>(m_canvas) : m_card);
    }
}

/// A page keeps the zoom of the one before, and is shown from its top.
void LargeView::showPicture(const PreviewContent &content)
{
    const PreviewContent before = std::exchange(m_shown, content);
    const DecodedPicture *const now = picture();
    const auto *const page = std::get_if<PreviewPage>(&content.body);
    const auto *const shownPage = std::get_if<PreviewPage>(&before.body);
    const auto *const whole = std::get_if<PreviewPicture>(&content.body);
    const QSizeF size = page ? page->whole : whole ? whole->whole / devicePixelRatioF() : QSizeF();
    const bool same = now && before.entry == content.entry;
    m_canvas->setPicture(now ? QPixmap::fromImage(imageOf(*now)) : QPixmap(), size,
                         same ? ZoomCanvas::Sharpness::Same : ZoomCanvas::Sharpness::Other);
    if (page && shownPage && same && page->page != shownPage->page)
        m_canvas->moveBy({0, m_canvas->place().height()});
    m_canvas->setAccessibleName(QStringLiteral("Bild von „%1“").arg(content.name));
}

void LargeView::showScale()
{
    using enum LargeHead::ZoomState;
    const double scale = m_canvas->scale();
    m_head->showZoom(!picture()             ? None
                     : m_canvas->isFitted() ? Fitted
                     : scale < largestScale ? Larger
                                            : Largest,
                     scale);
}

/// Loads the picture larger if it is painted larger than decoded, and has more to show.
void LargeView::askForSharpness()
{
    const DecodedPicture *const now = picture();
    if (!now)
        return;
    double wanted = m_canvas->shownSide();
    if (const auto *whole = std::get_if<PreviewPicture>(&m_shown.body))
        wanted = std::min(wanted, std::max(whole->whole.width(), whole->whole.height()));
    if (wanted > std::max(now->width, now->height))
        m_loader.setSide(decodedSide(wanted));
}

int LargeView::fittingSide() const
{
    return decodedSide(std::max(m_canvas->width(), m_canvas->height()) * devicePixelRatioF());
}

/// By value: the neighbour is replaced while it is asked for.
void LargeView::want(std::optional<Location> entry)
{
    if (entry)
        Q_EMIT entryWanted(*entry);
}

void LargeView::turnBy(int pages)
{
    if (const auto *page = std::get_if<PreviewPage>(&m_loader.content.get().body))
        turnTo(page->page + pages);
}

void LargeView::turnTo(int page)
{
    const auto *const now = std::get_if<PreviewPage>(&m_loader.content.get().body);
    if (now && page >= 0 && page < now->pages)
        m_loader.showPage(page);
}

bool LargeView::scrollsByKey() const
{
    return m_stack->currentWidget() == m_text || m_stack->currentWidget() == m_list;
}

bool LargeView::handleKey(const QKeyEvent &key)
{
    const Qt::KeyboardModifiers held = key.modifiers() & ~Qt::KeypadModifier;
    if (held == Qt::ShiftModifier && movePicture(key.key()))
        return true;
    // "+" may need Shift.
    if (!(held & ~(Qt::ControlModifier | Qt::ShiftModifier)) && zoomByKey(key.key()))
        return true;
    if (held != Qt::NoModifier)
        return false;
    if (key.key() == Qt::Key_Escape || key.key() == Qt::Key_Space) {
        // Holding the key that opened the view does not close it.
        if (!key.isAutoRepeat())
            close();
        return true;
    }
    return goOn(key.key());
}

bool LargeView::zoomByKey(int key)
{
    if (!picture())
        return false;
    if (key == Qt::Key_Plus || key == Qt::Key_Equal)
        m_canvas->zoomBy(zoomStep);
    else if (key == Qt::Key_Minus)
        m_canvas->zoomBy(1 / zoomStep);
    else if (key == Qt::Key_0)
        m_canvas->fit();
    else if (key == Qt::Key_1)
        m_canvas->showWhole();
    else
        return false;
    return true;
}

bool LargeView::movePicture(int key)
{
    const double step = scaled(moveStep);
    const QPointF way = key == Qt::Key_Left    ? QPointF(step, 0)
                        : key == Qt::Key_Right ? QPointF(-step, 0)
                        : key == Qt::Key_Up    ? QPointF(0, step)
                        : key == Qt::Key_Down  ? QPointF(0, -step)
                                               : QPointF();
    m_canvas->moveBy(way);
    return !way.isNull();
}

bool LargeView::goOn(int key)
{
    const auto *const page = std::get_if<PreviewPage>(&m_shown.body);
    const bool vertical = !scrollsByKey();
    if (key == Qt::Key_Left || (key == Qt::Key_Up && vertical))
        want(m_viewing.before);
    else if (key == Qt::Key_Right || (key == Qt::Key_Down && vertical))
        want(m_viewing.after);
    else if (page && (key == Qt::Key_PageUp || key == Qt::Key_PageDown))
        turnBy(key == Qt::Key_PageDown ? 1 : -1);
    else if (page && (key == Qt::Key_Home || key == Qt::Key_End))
        turnTo(key == Qt::Key_End ? page->pages - 1 : 0);
    else if (key == Qt::Key_Return || key == Qt::Key_Enter)
        Q_EMIT openRequested(m_viewing.entry);
    else
        return false;
    return true;
}

void LargeView::keyPressEvent(QKeyEvent *event)
{
    auto *const button = qobject_cast<QAbstractButton *>(focusWidget());
    if (button && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        button->click();
        return;
    }
    // Text and list scroll by keys although the view keeps the focus.
    if (!handleKey(*event) && scrollsByKey() && hasFocus()) {
        QKeyEvent passed(event->type(), event->key(), event->modifiers(), event->text());
        QCoreApplication::sendEvent(m_stack->currentWidget(), &passed);
    }
    event->accept(); // the window beneath gets none
}

bool LargeView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget()) {
        if (event->type() == QEvent::Resize)
            setGeometry(parentWidget()->rect());
        return false;
    }
    return event->type() == QEvent::KeyPress && handleKey(*static_cast<QKeyEvent *>(event));
}

bool LargeView::focusNextPrevChild(bool next)
{
    return focusWithin(*this, next);
}

void LargeView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), color(Token::Window));
}

} // namespace brellin
