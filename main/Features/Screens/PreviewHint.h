#pragma once

#include <QTextLayout>
#include <QWidget>

namespace brellin {

/// A short text on a tinted background, flowing around a symbol at its start.
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
    /// Lays out the lines for the widget's total width; returns the total height.
    double layOut(QTextLayout &lines, double width) const;

    const QString m_symbol;
    QString m_text;
};

} // namespace brellin
