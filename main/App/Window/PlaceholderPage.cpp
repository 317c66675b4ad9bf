#include "App/Window/PlaceholderPage.h"

#include "Look/Labels.h"

#include <QVBoxLayout>

namespace brellin {

PlaceholderPage::PlaceholderPage(const QString &symbol, const QString &title, const QString &text, QWidget *parent)
    : QWidget(parent)
{
    setAccessibleName(title);
    auto *const column = new QVBoxLayout(this);
    column->addWidget(new EmptyState(symbol, title, text, this));
}

} // namespace brellin
