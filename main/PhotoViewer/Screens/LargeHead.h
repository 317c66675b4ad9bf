#pragma once

#include "PhotoViewer/Viewing.h"

#include <QWidget>

class QHBoxLayout;
class QPushButton;

namespace brellin {

class ElidedLabel;
class SymbolButton;
class TextLabel;
struct PreviewContent;

/// The title row of the large view: name and summary, neighbours, zoom. A click on its buttons leaves the focus.
class LargeHead : public QWidget {
    Q_OBJECT
public:
    explicit LargeHead(QWidget *parent);

    void showViewing(const Viewing &viewing);
    void showContent(const PreviewContent &content);
    enum class ZoomState { None, Fitted, Larger, Largest };
    /// The zoom of the picture; without one its controls are hidden.
    void showZoom(ZoomState state, double scale);

    Q_SIGNAL void left();
    Q_SIGNAL void beforeWanted();
    Q_SIGNAL void afterWanted();
    Q_SIGNAL void smallerWanted();
    Q_SIGNAL void largerWanted();
    /// Between fitted and 100 %.
    Q_SIGNAL void fitToggled();
    Q_SIGNAL void openWanted();

private:
    void addTitles(QHBoxLayout &row);
    void addTools(QHBoxLayout &row);
    SymbolButton *add(QHBoxLayout &row, const QString &symbol, const QString &title, const QString &name,
                      void (LargeHead::*clicked)());
    TextLabel *addLabel(QHBoxLayout &row, const QString &name);

    ElidedLabel *m_name = nullptr;
    TextLabel *m_summary = nullptr;
    TextLabel *m_number = nullptr;
    SymbolButton *m_before = nullptr;
    SymbolButton *m_after = nullptr;
    SymbolButton *m_smaller = nullptr;
    SymbolButton *m_larger = nullptr;
    SymbolButton *m_fit = nullptr;
    TextLabel *m_scale = nullptr;
    QPushButton *m_open = nullptr;
};

} // namespace brellin
