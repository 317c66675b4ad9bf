#pragma once

#include "Features/PreviewContent.h"
#include "Look/Cards.h"

#include <QTimer>

class QPlainTextEdit;
class QStackedWidget;
class QTreeWidget;

namespace brellin {

class PreviewCanvas;
class TextLabel;

/// The card at the preview's top: a picture, a page, a text to read or a list of what is inside.
class PreviewCard : public Card {
    Q_OBJECT

public:
    explicit PreviewCard(QWidget *parent);

    void setContent(const PreviewContent &content);

    /// The longest side that a picture can take up, in device pixels; told again when it changes.
    Q_SIGNAL void sideWanted(int side);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void buildText();
    void buildList();
    void dress();
    void showText(const PreviewText &text);
    void showArchive(const PreviewArchive &archive);
    void showCanvas(const PreviewContent &content);
    /// Its height follows its width, which a layout in a widget with a layout of its own does not ask about.
    void fitHeight();
    void tellSide();

    QStackedWidget *m_stack;
    PreviewCanvas *m_canvas;
    QPlainTextEdit *m_text;
    QTreeWidget *m_list;
    TextLabel *m_remark;
    QTimer m_patience; ///< what is loaded at once needs no word about loading
    QTimer m_settling; ///< while the pane is dragged wider
    int m_side = 0;
};

} // namespace brellin
