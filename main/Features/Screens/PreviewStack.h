#pragma once

#include "Features/PreviewSummary.h"

#include <QPixmap>
#include <QWidget>

namespace brellin {

class ThumbnailImages;

/// The pictures of several entries as a stack, the first on top.
class PreviewStack : public QWidget {
    Q_OBJECT
public:
    /// Null thumbnails: only icons.
    PreviewStack(ThumbnailImages *thumbnails, QWidget *parent);

    void setEntries(const std::vector<PreviewSummary::Top> &entries);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QPixmap thumbnailOf(const PreviewSummary::Top &entry, int side) const;
    void paintOne(QPainter &painter, const PreviewSummary::Top &entry, double side) const;

    ThumbnailImages *m_thumbnails;
    std::vector<PreviewSummary::Top> m_entries;
};

} // namespace brellin
