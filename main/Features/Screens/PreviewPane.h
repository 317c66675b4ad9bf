#pragma once

#include "Features/PreviewContent.h"
#include "Features/PreviewSummary.h"

#include <QScrollArea>
#include <QStringList>

class QVBoxLayout;

namespace brellin {

class Card;
class EmptyState;
class PreviewCard;
class PreviewFactList;
class PreviewHint;
class PreviewLoader;
class PreviewStack;
class PreviewTagRow;
class Separator;
class SymbolButton;
class TextLabel;
class ThumbnailImages;

/// The preview pane at the right of the window ("Vorschaufenster"). Its content comes from the loader; tags and the
/// rules' hint are set from outside.
class PreviewPane : public QScrollArea {
    Q_OBJECT

public:
    PreviewPane(PreviewLoader &loader, QWidget *parent, ThumbnailImages *thumbnails = nullptr);

    /// Shows several entries as one while the loader has no entry.
    void setSummary(const std::optional<PreviewSummary> &summary);

    void setTags(const QStringList &tags);
    /// Sets what the rules would do with the entry; empty: nothing.
    void setHint(const QString &hint);

    QSize sizeHint() const override;

    /// The user wants to add or remove this tag.
    Q_SIGNAL void tagToggled(const QString &tag);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void buildPages(QVBoxLayout &column);
    void showContent(const PreviewContent &content);
    void showTexts(const QString &name, const QString &summary, const std::vector<PreviewFact> &facts);
    void showParts();
    void showPages(const PreviewContent &content);

    PreviewLoader &m_loader;
    Separator *m_line; ///< separates the pane from the list
    QWidget *m_whole;
    EmptyState *m_empty;
    PreviewCard *m_card;
    Card *m_several;
    PreviewStack *m_stack;
    std::optional<PreviewSummary> m_summaryShown;
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
