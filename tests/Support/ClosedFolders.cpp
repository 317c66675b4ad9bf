#include "Support/ClosedFolders.h"

#include <cstdlib>
#include <filesystem>

#include <sys/prctl.h>
#include <unistd.h>

namespace brellin::test {

namespace {

constexpr uid_t root = 0;
constexpr uid_t somebodyElse = 65534;
constexpr std::filesystem::perms readable{0755};

/// Gives the whole tree to the other user, including what only its owner may read.
void giveAway(const TempTree &tree)
{
    (void)::lchown(tree.root().c_str(), somebodyElse, static_cast<gid_t>(-1));
    for (const auto &entry : std::filesystem::recursive_directory_iterator(tree.root()))
        (void)::lchown(entry.path().c_str(), somebodyElse, static_cast<gid_t>(-1));
}

/// For all threads. The real user changes as well, since Qt refuses to start programs whose users differ.
bool become(uid_t user)
{
    // Without the flag /proc/self would belong to root.
    return ::setresuid(user, user, root) == 0 && ::prctl(PR_SET_DUMPABLE, 1, 0, 0, 0) == 0;
}

} // namespace

ClosedFolders::ClosedFolders(const TempTree &tree, std::initializer_list<std::string_view> folders)
    : m_wasRoot(::geteuid() == root)
{
    for (const std::string_view folder : folders) {
        m_folders.push_back(tree.path(folder));
        std::filesystem::permissions(m_folders.back(), std::filesystem::perms::none);
    }
    if (m_wasRoot)
        giveAway(tree);
    if (m_wasRoot && !become(somebodyElse))
        m_folders.clear();
}

ClosedFolders::~ClosedFolders()
{
    if (m_wasRoot && !become(root))
        std::abort();
    for (const Location &folder : m_folders)
        std::filesystem::permissions(folder, readable);
}

ClosedFolders::operator bool() const
{
    return !m_folders.empty();
}

} // namespace brellin::test
