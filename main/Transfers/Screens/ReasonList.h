#pragma once

#include <QStringList>
#include <QWidget>

namespace brellin {

/// Names with the reason for each below it ("Film.mkv: Die Datei ist zu groß."). A name that is too long is shortened in its
/// middle.
class ReasonList : public QWidget {
    Q_OBJECT
public:
    ReasonList(const QStringList &lines, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace brellin
