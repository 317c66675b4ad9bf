#pragma once

#include "Features/PreviewContent.h"
#include "Features/PreviewSummary.h"

#include <QWidget>

class QLabel;

namespace brellin {

class PreviewFactList;
class PreviewStack;
class TextLabel;
class ThumbnailImages;

/// An entry without a picture: symbol, name, kind and size, facts, and why there is no picture. Or several entries as one.
class EntryCard : public QWidget {
    Q_OBJECT
public:
    EntryCard(ThumbnailImages *thumbnails, QWidget *parent);

    void setContent(const PreviewContent &content);
    void setSummary(const PreviewSummary &summary);
    void setRemark(const QString &remark);

private:
    void drawSymbol();

    QLabel *m_symbol;
    PreviewStack *m_stack;
    TextLabel *m_name;
    TextLabel *m_summary;
    TextLabel *m_remark;
    PreviewFactList *m_facts;
    PreviewContent m_content;
};

} // namespace brellin
