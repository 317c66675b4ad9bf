#pragma once

#include "Look/SheetFrame.h"

#include <QStringList>

namespace brellin {

/// A title and lines of text, with nothing to decide.
class DetailsSheet : public SheetFrame {
    Q_OBJECT
public:
    /// Shows the first 500 lines and the number of the others.
    DetailsSheet(const QString &title, const QStringList &lines, QWidget *window);

protected:
    void confirm() override { close(); }
};

} // namespace brellin
