#include "System/ToolEnvironment.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <sstream>
#include <string_view>

#include <unistd.h>

extern char **environ; // NOLINT(readability-redundant-declaration): not every system's headers declare it

namespace brellin {

namespace {

constexpr std::string_view usualPath = "PATH=/usr/local/bin:/usr/bin:/bin";

bool isForTools(std::string_view variable)
{
    constexpr std::array<std::string_view, 9> names{
        "PATH=", "HOME=", "USER=", "LOGNAME=", "LANG=", "LANGUAGE=", "TZ=", "TMPDIR=", "DBUS_SESSION_BUS_ADDRESS="};
    constexpr std::array<std::string_view, 2> families{"LC_", "XDG_"};
    const auto begins = [variable](std::string_view beginning) { return variable.starts_with(beginning); };
    return std::ranges::any_of(names, begins) || std::ranges::any_of(families, begins);
}

std::string_view pathIn(const std::vector<std::string> &environment)
{
    constexpr std::string_view name = "PATH=";
    for (const std::string_view variable : environment) {
        if (variable.starts_with(name))
            return variable.substr(name.size());
    }
    return {};
}

} // namespace

std::vector<std::string> userEnvironment()
{
    std::vector<std::string> variables;
    for (char **variable = environ; variable && *variable; ++variable)
        variables.emplace_back(*variable);
    return variables;
}

std::vector<std::string> toolEnvironment()
{
    std::vector<std::string> variables;
    std::ranges::copy_if(userEnvironment(), std::back_inserter(variables), isForTools);
    if (pathIn(variables).empty())
        variables.emplace_back(usualPath);
    return variables;
}

std::string programIn(const std::vector<std::string> &environment, const std::string &program)
{
    if (program.find('/') != std::string::npos)
        return program;
    std::istringstream folders{std::string(pathIn(environment))};
    for (std::string folder; std::getline(folders, folder, ':');) {
        std::string file = folder;
        file.append("/").append(program);
        if (folder.starts_with('/') && ::access(file.c_str(), X_OK) == 0)
            return file;
    }
    return {};
}

} // namespace brellin
