#pragma once

#include "System/UserDefaults.h"
#include "System/Workspace.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brellin {

/// Where this desktop keeps its applications, and where programs are.
struct DesktopEnvironment {
    std::vector<Location> dataFolders;   ///< the user's own first
    std::vector<Location> configFolders; ///< the user's own first
    std::vector<QString> desktops;       ///< names of the desktop at work, lower case
    std::vector<Location> programFolders;
    std::string terminal; ///< what the user has set as his terminal; empty: nothing

    /// As the variables of this process say.
    static DesktopEnvironment ofThisUser(const Location &home);
    /// Where a program lies; a path is taken as it is.
    std::optional<Location> program(const std::string &name) const;
};

/// The desktop as freedesktop.org's conventions describe it.
class SystemWorkspace : public Workspace {
public:
    /// Asks the system's file manager to show these entries, by their URLs.
    using ShowItems = std::function<Result<void>(const std::vector<QString> &urls)>;

    /// The settings outlive it. "terminal" in them is the command of a terminal.
    explicit SystemWorkspace(const UserDefaults &defaults, DesktopEnvironment environment,
                             ShowItems showItems = showItemsOnBus);
    static Result<void> showItemsOnBus(const std::vector<QString> &urls);

    bool hasApplication(const QString &identifier) const override;
    Result<void> openApplication(const QString &identifier) override;
    Result<void> reveal(const Location &entry) override;
    Result<void> open(const Location &entry) override;
    std::vector<Application> applicationsFor(const QString &mimeType) const override;
    Result<void> openWith(const std::vector<Location> &entries, const QString &identifier) override;
    Result<void> openTerminal(const Location &folder) override;

private:
    std::optional<std::vector<std::string>> terminalCommand() const;

    const UserDefaults &m_defaults;
    DesktopEnvironment m_environment;
    ShowItems m_showItems;
};

} // namespace brellin
