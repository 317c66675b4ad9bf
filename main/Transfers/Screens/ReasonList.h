#pragma once

#include <QStringList>
#include <QWidget>

namespace brellin {

/// Names, each with its reason below ("Film.mkv: Die Datei ist zu groß."). Long names are elided in the middle.
class ReasonList : public QWidget {
    Q_OBJECT
public:
    ReasonList(const QStringList &lines, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace brellin
