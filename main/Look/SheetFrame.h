#pragma once

#include <QWidget>

class QHBoxLayout;
class QVBoxLayout;

namespace brellin {

/// A modal sheet over its dimmed window: title, content (scrolls in a small window), buttons at the lower right. Traps
/// the focus, closes with Esc and deletes itself when closed. Show it with `open()`, which does not block.
class SheetFrame : public QWidget {
    Q_OBJECT
public:
    /// `wanted` is the preferred size in points at font factor 1, limited by the window. Height 0 fits the content.
    SheetFrame(const QString &title, const QString &subtitle, QSize wanted, QWidget *window);

    /// The layout for the content.
    QVBoxLayout *content() const { return m_content; }
    /// A column at the right with the window's background; created on first use.
    QVBoxLayout *side(int width);
    /// The row of buttons, right-aligned.
    QHBoxLayout *buttons() const { return m_buttons; }
    void open();
    /// Hides the sheet, emits `closed` and deletes it later.
    void close();

    Q_SIGNAL void closed();

protected:
    /// Called on Esc; closes by default.
    virtual void escape() { close(); }
    /// Called on Return if no push button has the focus; Return activates a focused button.
    virtual void confirm() {}
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void fit();
    int heightOfContent(int width) const;

    QSize m_wanted;
    QWidget *m_panel;
    QWidget *m_inner;
    QVBoxLayout *m_content;
    QHBoxLayout *m_middle;
    QHBoxLayout *m_buttons;
    QVBoxLayout *m_side = nullptr;
    QWidget *m_focusBefore = nullptr;
};

} // namespace brellin
