#pragma once

#include "Features/PreviewContent.h"
#include "Features/PreviewSummary.h"
#include "PhotoViewer/Viewing.h"

#include <QTimer>
#include <QWidget>

class QStackedWidget;

namespace brellin {

class EntryCard;
class LargeHead;
class PageRow;
class PreviewArchiveList;
class PreviewLoader;
class PreviewTextView;
class ThumbnailImages;
class ZoomCanvas;

/// The large view of one entry after the other, over the content of its window: pictures and pages with zoom, texts,
/// contents of archives; otherwise symbol and facts. Knows no list: asks for the neighbour and is told what to show.
class LargeView : public QWidget {
    Q_OBJECT
public:
    /// Loads with `loader`, which must outlive it.
    LargeView(PreviewLoader &loader, QWidget *window, ThumbnailImages *thumbnails = nullptr);

    /// Opens, or shows another entry. The entry shown already is loaded again.
    void show(const Viewing &viewing);
    /// Opens, or shows several entries as one, of which `first` is the first.
    void showSummary(const PreviewSummary &summary, const Location &first);
    /// The same entry in a list that has changed.
    void setViewing(const Viewing &viewing);
    const Viewing &viewing() const { return m_viewing; }
    void close();

    Q_SIGNAL void entryWanted(const brellin::Location &entry);
    Q_SIGNAL void openRequested(const brellin::Location &entry);
    Q_SIGNAL void closed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void buildBody(ThumbnailImages *thumbnails);
    void connectAll();
    void open();
    bool handleKey(const QKeyEvent &key);
    bool zoomByKey(int key);
    bool movePicture(int key);
    bool goOn(int key);
    bool scrollsByKey() const;
    void want(std::optional<Location> entry);
    void turnBy(int pages);
    void turnTo(int page);
    void showContent(const PreviewContent &content);
    void showPicture(const PreviewContent &content);
    void showScale();
    void askForSharpness();
    int fittingSide() const;
    const DecodedPicture *picture() const;

    PreviewLoader &m_loader;
    Viewing m_viewing;
    LargeHead *m_head;
    QStackedWidget *m_stack = nullptr;
    ZoomCanvas *m_canvas = nullptr;
    PreviewTextView *m_text = nullptr;
    PreviewArchiveList *m_list = nullptr;
    EntryCard *m_card = nullptr;
    PageRow *m_pages;
    PreviewContent m_shown; ///< the last content with a picture, for telling a sharper one from another
    QTimer m_patience;      ///< delays the loading indicator, so that fast loads do not flicker
};

} // namespace brellin
