#pragma once

#include "Features/PreviewContent.h"

#include <QWidget>

class QLabel;

namespace brellin {

class PreviewFactList;
class TextLabel;

/// An entry without a picture: symbol, name, kind and size, facts, and why there is no picture.
class EntryCard : public QWidget {
    Q_OBJECT
public:
    explicit EntryCard(QWidget *parent);

    void setContent(const PreviewContent &content);
    void setRemark(const QString &remark);

private:
    void drawSymbol();

    QLabel *m_symbol;
    TextLabel *m_name;
    TextLabel *m_summary;
    TextLabel *m_remark;
    PreviewFactList *m_facts;
    PreviewContent m_content;
};

} // namespace brellin
