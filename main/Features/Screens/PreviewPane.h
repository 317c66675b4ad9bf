#pragma once

#include "Features/PreviewContent.h"

#include <QScrollArea>
#include <QStringList>

class QVBoxLayout;

namespace brellin {

class EmptyState;
class PreviewCard;
class PreviewFactList;
class PreviewHint;
class PreviewLoader;
class PreviewTagRow;
class Separator;
class SymbolButton;
class TextLabel;

/// The pane at the window's right that shows what is in the entry that is chosen ("Vorschaufenster"). What it shows comes
/// from the loader; tags and the rules' hint are told from outside.
class PreviewPane : public QScrollArea {
    Q_OBJECT

public:
    PreviewPane(PreviewLoader &loader, QWidget *parent);

    void setTags(const QStringList &tags);
    /// What the rules would do with the entry; empty: nothing.
    void setHint(const QString &hint);

    QSize sizeHint() const override;

    /// The user wants to give the entry this tag, or to take it away.
    Q_SIGNAL void tagToggled(const QString &tag);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void buildPages(QVBoxLayout &column);
    void showContent(const PreviewContent &content);
    void showPages(const PreviewContent &content);

    PreviewLoader &m_loader;
    Separator *m_line; ///< parts the pane from the list
    QWidget *m_whole;
    EmptyState *m_empty;
    PreviewCard *m_card;
    QWidget *m_pages;
    SymbolButton *m_back = nullptr;
    SymbolButton *m_forward = nullptr;
    TextLabel *m_page = nullptr;
    TextLabel *m_name;
    TextLabel *m_summary;
    PreviewFactList *m_facts;
    PreviewTagRow *m_tags;
    PreviewHint *m_hint;
};

} // namespace brellin
