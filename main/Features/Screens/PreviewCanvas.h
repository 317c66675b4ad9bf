#pragma once

#include "Features/PreviewContent.h"

#include <QPixmap>
#include <QWidget>

namespace brellin {

/// Paints the picture of an entry, or its icon with a remark why there is no picture.
class PreviewCanvas : public QWidget {
    Q_OBJECT

public:
    explicit PreviewCanvas(QWidget *parent);

    void setContent(const PreviewContent &content);
    /// Sets the text below the icon.
    void setRemark(const QString &remark);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void paintPicture(QPainter &painter) const;
    void paintDrawing(QPainter &painter) const;
    QPixmap drawing(double side) const;

    QPixmap m_picture;
    bool m_isPaper = false; ///< a page or photo, painted with a shadow
    bool m_isFolder = false;
    bool m_isLink = false;
    std::string m_fileName;
    QString m_remark;
};

} // namespace brellin
