#pragma once

#include "Features/PreviewContent.h"

#include <QWidget>

namespace brellin {

class SymbolButton;
class TextLabel;

/// The row below the large view: which page of a document is shown, or that not all of a text or archive is.
class PageRow : public QWidget {
    Q_OBJECT
public:
    explicit PageRow(QWidget *parent);

    void showContent(const PreviewContent &content);

    Q_SIGNAL void backWanted();
    Q_SIGNAL void onWanted();

private:
    SymbolButton *m_back;
    TextLabel *m_page;
    SymbolButton *m_on;
    TextLabel *m_remark;
};

} // namespace brellin
