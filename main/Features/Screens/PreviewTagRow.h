#pragma once

#include <QAbstractButton>
#include <QStringList>
#include <QWidget>

#include <vector>

namespace brellin {

/// One of the palette's tags as a ring, filled where the entry carries it.
class PreviewTagRing : public QAbstractButton {
    Q_OBJECT

public:
    PreviewTagRing(const QString &tag, QColor color, QWidget *parent);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    const QColor m_color;
};

/// The seven tags in a row. A click only says what is wanted: the rings follow the tags that are set from outside.
class PreviewTagRow : public QWidget {
    Q_OBJECT

public:
    explicit PreviewTagRow(QWidget *parent);

    void setTags(const QStringList &tags);

    Q_SIGNAL void toggled(const QString &tag);

private:
    std::vector<PreviewTagRing *> m_rings;
};

} // namespace brellin
