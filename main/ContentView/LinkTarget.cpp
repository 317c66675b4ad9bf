#include "ContentView/LinkTarget.h"

#include <system_error>

namespace brellin {

namespace {

namespace fs = std::filesystem;

EntryKind kindOf(const fs::file_status &status)
{
    switch (status.type()) {
    case fs::file_type::directory:
        return EntryKind::Folder;
    case fs::file_type::regular:
        return EntryKind::File;
    default:
        return EntryKind::Special;
    }
}

} // namespace

bool LinkTargets::isOnNetwork(const Location &location)
{
    if (!m_mounts)
        m_mounts = currentMountTable();
    const Mount *const mount = mountHolding(*m_mounts, location.native());
    return mount != nullptr && isNetworkFileSystem(mount->fileSystem);
}

LinkState LinkTargets::examine(const Location &link, FileAttributes &target)
{
    std::error_code error;
    const Location text = fs::read_symlink(link, error);
    if (error)
        return LinkState::Broken;
    const Location place = standardised(link.parent_path() / text);
    if (isOnNetwork(place) && !isOnNetwork(link)) {
        const bool looksLikeFile = !extensionOf(place.filename().native()).empty();
        target.kind = looksLikeFile ? EntryKind::File : EntryKind::Folder;
        return LinkState::Leads;
    }
    const fs::file_status status = fs::status(link, error);
    target.kind = kindOf(status);
    return fs::exists(status) || (error && error != std::errc::no_such_file_or_directory &&
                                  error != std::errc::too_many_symbolic_link_levels)
               ? LinkState::Leads
               : LinkState::Broken;
}

} // namespace brellin
