#include "Disk/EntryDetails.h"

#include "Disk/Linux/Statx.h"

#include <map>
#include <mutex>
#include <vector>

#include <pwd.h>
#include <unistd.h>

namespace brellin {

namespace {

QString accountName(std::uint32_t owner)
{
    const long wanted = ::sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> texts(wanted > 0 ? static_cast<std::size_t>(wanted) : 16'384);
    passwd entry{};
    passwd *found = nullptr;
    const bool known = ::getpwuid_r(owner, &entry, texts.data(), texts.size(), &found) == 0 && found != nullptr;
    return known ? QString::fromLocal8Bit(entry.pw_name) : QString::number(owner);
}

} // namespace

EntryDetails readDetails(const Location &entry)
{
    struct statx status{};
    constexpr Attribute wanted = Attribute::Created | Attribute::Accessed | Attribute::Mode;
    if (::statx(AT_FDCWD, entry.c_str(), statxFlags, statxMask(wanted) | STATX_UID, &status) != 0)
        return {};
    ownerName(status.stx_uid);
    const FileAttributes found = attributesFrom(status, wanted);
    return {found.created.value_or(Instant::min()), found.accessed, status.stx_uid, found.mode};
}

QString ownerName(std::uint32_t owner)
{
    static std::mutex mutex;
    static std::map<std::uint32_t, QString> names{{EntryDetails::nobody, QString()}};
    const std::scoped_lock lock(mutex);
    const auto known = names.find(owner);
    return known != names.end() ? known->second : names.emplace(owner, accountName(owner)).first->second;
}

} // namespace brellin
