#pragma once

#include <QAbstractButton>
#include <QStringList>
#include <QWidget>

#include <vector>

namespace brellin {

/// A palette tag as a ring, filled if the entry has the tag.
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

/// The seven palette tags. A click only emits a request; the rings show the tags set from outside.
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
