#include "App/Window/DesktopPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace brellin {

void DesktopPasteboard::setText(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
}

} // namespace brellin
