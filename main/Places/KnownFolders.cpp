#include "Places/KnownFolders.h"

namespace brellin {

namespace {

std::optional<Location> ifFolder(const Location &location)
{
    std::error_code absent;
    return std::filesystem::is_directory(location, absent) ? std::optional(location) : std::nullopt;
}

} // namespace

KnownFolders KnownFolders::ofThisUser()
{
    const AccountFolders account = accountFolders();
    KnownFolders folders;
    folders.home = account.home;
    folders.m_standard = account.standard;
    folders.trash = account.trash;
    folders.applications = ifFolder("/Applications");
    folders.iCloud = ifFolder(account.home / "Library/Mobile Documents/com~apple~CloudDocs");
    if (folders.iCloud)
        folders.eigeneDateien = ifFolder(*folders.iCloud / "Eigene Dateien");
    return folders;
}

const Location &KnownFolders::dir(StandardFolder which) const
{
    return m_standard.at(static_cast<std::size_t>(which));
}

QString KnownFolders::title(const Location &folder) const
{
    const Location normal = folder.empty() ? folder : standardised(folder);
    if (iCloud && normal == *iCloud)
        return QStringLiteral("iCloud Drive");
    if (normal == home)
        return QStringLiteral("Benutzerordner");
    if (normal == trash)
        return QStringLiteral("Papierkorb");
    return shownName(normal);
}

} // namespace brellin
