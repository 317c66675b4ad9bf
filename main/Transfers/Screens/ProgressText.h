#pragma once

#include <QStringList>
#include <QWidget>

namespace brellin {

/// A small text of numbers that change all the time ("1,1 GB von 1,7 GB · 212 von 340 Dateien"): its digits stand still, and
/// where it is too wide it goes on in another line, broken at " · ". It keeps the height it once needed, so that nothing
/// around it jumps.
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
