#pragma once

#include <QTextLayout>
#include <QWidget>

namespace brellin {

/// A few words on a soft ground, with a symbol at their beginning around which they flow.
class PreviewHint : public QWidget {
    Q_OBJECT

public:
    explicit PreviewHint(const QString &symbol, QWidget *parent);

    void setText(const QString &text);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, heightForWidth(width())}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    /// Lays the lines out for a width of the whole; gives the height of the whole.
    double layOut(QTextLayout &lines, double width) const;

    const QString m_symbol;
    QString m_text;
};

} // namespace brellin
