#pragma once

#include "Sidebar/Screens/SidebarRow.h"

#include <functional>

class QMenu;
class QWidget;

namespace brellin {

/// What a row's context menu can run; entries whose function is empty are left out.
struct SidebarActions {
    std::function<void()> open;
    std::function<void()> openInNewTab;
    std::function<void()> toggleFold;
    std::function<void()> rename;
    std::function<void()> moveUp;
    std::function<void()> moveDown;
    std::function<void()> chooseSymbol;
    std::function<void()> chooseImage;
    std::function<void()> removeImage;
    std::function<void(const std::optional<QString> &tagName)> setColor;
    std::function<void()> pin;
    std::function<void()> unpin;
    std::function<void()> eject;
    std::function<void()> properties;
};

/// The context menu of a row, which deletes itself when closed; null if it would be empty.
QMenu *makeSidebarMenu(const SidebarRow &row, const SidebarActions &actions, QWidget *parent);

} // namespace brellin
