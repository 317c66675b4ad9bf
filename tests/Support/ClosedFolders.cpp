#include "Support/ClosedFolders.h"

#include <cstdlib>
#include <filesystem>

#include <unistd.h>

namespace brellin::test {

namespace {

constexpr uid_t somebodyElse = 65534;
constexpr std::filesystem::perms readable{0755};

} // namespace

ClosedFolders::ClosedFolders(const TempTree &tree, std::initializer_list<std::string_view> folders)
    : m_wasRoot(::geteuid() == 0)
{
    std::filesystem::permissions(tree.root(), readable);
    for (const std::string_view folder : folders) {
        m_folders.push_back(tree.path(folder));
        std::filesystem::permissions(m_folders.back(), std::filesystem::perms::none);
    }
    if (m_wasRoot && ::seteuid(somebodyElse) != 0)
        m_folders.clear();
}

ClosedFolders::~ClosedFolders()
{
    if (m_wasRoot && ::seteuid(0) != 0)
        std::abort();
    for (const Location &folder : m_folders)
        std::filesystem::permissions(folder, readable);
}

ClosedFolders::operator bool() const
{
    return !m_folders.empty();
}

} // namespace brellin::test
