#pragma once

#include "System/ApplicationChoice.h"
#include "System/UserDefaults.h"
#include "System/Workspace.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brellin {

/// The desktop's search paths for applications and programs.
struct DesktopEnvironment {
    std::vector<Location> dataFolders;   ///< the user's own first
    std::vector<Location> configFolders; ///< the user's own first
    std::vector<QString> desktops;       ///< names of the running desktop, in lower case
    std::vector<Location> programFolders;
    std::string terminal; ///< the user's configured terminal; empty: none

    /// From the environment variables of this process.
    static DesktopEnvironment ofThisUser(const Location &home);
    /// The path of a program; a path is returned as it is.
    std::optional<Location> program(const std::string &name) const;
};

/// The desktop according to the conventions of freedesktop.org.
class SystemWorkspace : public Workspace, public ApplicationChoice {
public:
    /// Asks the system's file manager to show entries, by URL.
    using ShowItems = std::function<Result<void>(const std::vector<QString> &urls)>;

    /// The settings must outlive it. Their value "terminal" is the command of a terminal.
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
    std::vector<Application> offeredApplications() const override;
    Result<void> setDefaultApplication(const QString &mimeType, const QString &identifier) override;

private:
    std::optional<std::vector<std::string>> terminalCommand() const;

    const UserDefaults &m_defaults;
    DesktopEnvironment m_environment;
    ShowItems m_showItems;
};

} // namespace brellin
