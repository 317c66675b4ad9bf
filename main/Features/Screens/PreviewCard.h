#pragma once

#include "Features/PreviewContent.h"
#include "Look/Cards.h"

#include <QTimer>

class QStackedWidget;

namespace brellin {

class PreviewArchiveList;
class PreviewCanvas;
class PreviewTextView;
class TextLabel;

/// The upper card of the preview: a picture, a page, a text, or the list of an archive's entries.
class PreviewCard : public Card {
    Q_OBJECT

public:
    explicit PreviewCard(QWidget *parent);

    void setContent(const PreviewContent &content);

    /// The longest side available for a picture, in device pixels; emitted whenever it changes.
    Q_SIGNAL void sideWanted(int side);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void showCanvas(const PreviewContent &content);
    /// Sets the height from the width; a layout nested in another widget's layout does not do that.
    void fitHeight();
    void tellSide();

    QStackedWidget *m_stack;
    PreviewCanvas *m_canvas;
    PreviewTextView *m_text;
    PreviewArchiveList *m_list;
    TextLabel *m_remark;
    QTimer m_patience; ///< delays the loading indicator, so that fast loads do not flicker
    QTimer m_settling; ///< while the pane is being resized
    int m_side = 0;
};

} // namespace brellin
