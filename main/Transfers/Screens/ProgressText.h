#pragma once

#include <QStringList>
#include <QWidget>

namespace brellin {

/// A small text with changing numbers ("1,1 GB von 1,7 GB · 212 von 340 Dateien"): uses digits of equal width, and
/// wraps at " · ". Never shrinks in height, so that nothing around it jumps.
class ProgressText : public QWidget {
    Q_OBJECT
public:
    explicit ProgressText(QWidget *parent);

    void setText(const QString &text);
    QString text() const { return m_text; }
    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QStringList broken() const;
    void dress();

    QString m_text;
    qsizetype m_lines = 1;
};

} // namespace brellin
