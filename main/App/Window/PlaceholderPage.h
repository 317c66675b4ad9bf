#pragma once

#include <QWidget>

namespace brellin {

/// The page of a place whose feature is not there yet: says so, and what will stand here.
class PlaceholderPage : public QWidget {
    Q_OBJECT
public:
    PlaceholderPage(const QString &symbol, const QString &title, const QString &text, QWidget *parent);
};

} // namespace brellin
