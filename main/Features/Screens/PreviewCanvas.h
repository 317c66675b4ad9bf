#pragma once

#include "Features/PreviewContent.h"

#include <QPixmap>
#include <QWidget>

namespace brellin {

/// The picture of an entry on the preview's card, or its drawing with a word why there is no picture.
class PreviewCanvas : public QWidget {
    Q_OBJECT

public:
    explicit PreviewCanvas(QWidget *parent);

    void setContent(const PreviewContent &content);
    /// A word below the drawing.
    void setRemark(const QString &remark);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void paintPicture(QPainter &painter) const;
    void paintDrawing(QPainter &painter) const;
    QPixmap drawing(double side) const;

    QPixmap m_picture;
    bool m_isPaper = false; ///< a page or a photo, which lies on the card with a shadow
    bool m_isFolder = false;
    bool m_isLink = false;
    std::string m_fileName;
    QString m_remark;
};

} // namespace brellin
