#pragma once

#include <QWidget>

namespace brellin {

/// A page for a place that is not implemented yet: says so, and what it will show.
class PlaceholderPage : public QWidget {
    Q_OBJECT
public:
    PlaceholderPage(const QString &symbol, const QString &title, const QString &text, QWidget *parent);
};

} // namespace brellin
