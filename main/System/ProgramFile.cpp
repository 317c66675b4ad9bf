#include "System/ProgramFile.h"

#include "Base/Descriptor.h"

#include <algorithm>
#include <array>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brellin {

namespace {

/// Extensions of files that desktops execute or install when opened, regardless of permissions. Sorted.
constexpr auto programEndings = std::to_array<std::string_view>(
    {"action", "app",        "appimage", "bat", "cmd",  "com",  "command", "deb", "desktop",
     "exe",    "flatpakref", "jar",      "lnk", "msi",  "msix", "pif",     "pkg", "ps1",
     "reg",    "rpm",        "run",      "scr", "snap", "vbe",  "vbs",     "wsf"});
static_assert(std::ranges::is_sorted(programEndings));

/// Extensions of scripts: executed if executable, otherwise text. Sorted.
constexpr auto scriptEndings = std::to_array<std::string_view>(
    {"applescript", "bash", "fish", "js", "ksh", "mjs", "pl", "py", "rb", "scpt", "sh", "zsh"});
static_assert(std::ranges::is_sorted(scriptEndings));

/// Whether a file starts like a binary or a script. Distinguishes programs from pictures on volumes without
/// permissions, where every file is executable.
bool beginsLikeProgram(int file)
{
    std::array<char, 4> start{};
    const ssize_t length = ::pread(file, start.data(), start.size(), 0);
    const std::string_view beginning(start.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    return beginning.starts_with("#!") || beginning == "\177ELF";
}

} // namespace

bool isProgram(const Location &entry)
{
    struct stat status = {};
    // An entry that cannot be examined cannot be executed either.
    if (::stat(entry.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return false;
    const std::string name = entry.filename().native();
    const std::string ending = lowerExtensionOf(name);
    if (std::ranges::binary_search(programEndings, std::string_view(ending)))
        return true;
    if ((status.st_mode & (S_IXUSR | S_IXGRP | S_IXOTH)) == 0)
        return false;
    if (std::ranges::binary_search(scriptEndings, std::string_view(ending)))
        return true;
    const Descriptor file(::open(entry.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    // Executable but unreadable: assume a program.
    return !file.isOpen() || beginsLikeProgram(file.number());
}

} // namespace brellin
