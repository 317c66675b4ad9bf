#include "Support/TempTree.h"

#include <QCryptographicHash>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace brellin::test {

namespace fs = std::filesystem;

namespace {

std::string contentOf(const Location &file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// All user attributes as sorted "user.x=value".
std::string attributesOf(const Location &entry)
{
    std::vector<char> names(65536);
    const ssize_t length = ::llistxattr(entry.c_str(), names.data(), names.size());
    std::vector<std::string> lines;
    for (ssize_t at = 0; at < length;) {
        const std::string name(names.data() + at);
        at += static_cast<ssize_t>(name.size()) + 1;
        std::vector<char> value(65536);
        const ssize_t size = ::lgetxattr(entry.c_str(), name.c_str(), value.data(), value.size());
        if (name.starts_with("user.") && size >= 0)
            lines.push_back(name + "=" + std::string(value.data(), static_cast<std::size_t>(size)));
    }
    std::ranges::sort(lines);
    std::string text;
    for (const std::string &line : lines)
        text += " " + line;
    return text;
}

std::string lineOf(const Location &entry, const Location &root)
{
    struct stat status{};
    if (::lstat(entry.c_str(), &status) != 0)
        return {};
    const std::string name = entry.lexically_relative(root).native();
    const std::string mode = " " + QByteArray::number(status.st_mode & 07777, 8).toStdString();
    const std::string time = " " + std::to_string(status.st_mtim.tv_sec) + "." + std::to_string(status.st_mtim.tv_nsec);
    if (S_ISLNK(status.st_mode))
        return name + " -> " + fs::read_symlink(entry).native() + "\n";
    if (S_ISDIR(status.st_mode))
        return name + "/" + mode + attributesOf(entry) + "\n";
    if (!S_ISREG(status.st_mode))
        return name + " (special)\n";
    const QByteArray digest =
        QCryptographicHash::hash(QByteArray::fromStdString(contentOf(entry)), QCryptographicHash::Sha256);
    return name + mode + time + attributesOf(entry) + " " + std::to_string(status.st_size) + " " +
           digest.toHex().left(16).toStdString() + "\n";
}

} // namespace

TempTree::TempTree(const Location &parent)
{
    std::string pattern = (parent / "brellin-test-XXXXXX").native();
    if (::mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error("cannot create " + pattern);
    m_root = fs::canonical(pattern);
}

TempTree::~TempTree()
{
    std::error_code ignored;
    for (auto it = fs::recursive_directory_iterator(m_root, ignored); it != fs::recursive_directory_iterator();
         it.increment(ignored)) {
        if (it->is_directory(ignored) && !it->is_symlink(ignored))
            fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
    }
    fs::remove_all(m_root, ignored);
}

Location TempTree::file(std::string_view relative, std::string_view content) const
{
    const Location location = path(relative);
    fs::create_directories(location.parent_path());
    std::ofstream stream(location, std::ios::binary | std::ios::trunc);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    stream.close();
    if (!stream)
        throw std::runtime_error("cannot write " + location.native());
    return location;
}

Location TempTree::folder(std::string_view relative) const
{
    fs::create_directories(path(relative));
    return path(relative);
}

Location TempTree::link(std::string_view relative, std::string_view target) const
{
    const Location location = path(relative);
    fs::create_directories(location.parent_path());
    fs::create_symlink(target, location);
    return location;
}

void TempTree::lines(std::initializer_list<std::string_view> entries) const
{
    for (const std::string_view entry : entries) {
        if (const std::size_t arrow = entry.find("->"); arrow != std::string_view::npos)
            link(entry.substr(0, arrow), entry.substr(arrow + 2));
        else if (const std::size_t equals = entry.find('='); equals != std::string_view::npos)
            file(entry.substr(0, equals), entry.substr(equals + 1));
        else if (entry.ends_with('/'))
            folder(entry.substr(0, entry.size() - 1));
        else
            file(entry);
    }
}

void TempTree::age(std::string_view relative, Instant modified) const
{
    const auto whole = std::chrono::floor<std::chrono::seconds>(modified);
    const timespec time{whole.time_since_epoch().count(), (modified - whole).count()};
    const timespec times[2] = {time, time};
    if (::utimensat(AT_FDCWD, path(relative).c_str(), times, AT_SYMLINK_NOFOLLOW) != 0)
        throw std::runtime_error("cannot set the time of " + path(relative).native());
}

std::string TempTree::content(std::string_view relative) const
{
    return contentOf(path(relative));
}

bool TempTree::has(std::string_view relative) const
{
    return fs::exists(fs::symlink_status(path(relative)));
}

std::string TempTree::snapshot() const
{
    return snapshotOf(m_root);
}

std::string snapshotOf(const Location &folder)
{
    std::vector<std::string> lines;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(folder))
        lines.push_back(lineOf(entry.path(), folder));
    std::ranges::sort(lines);
    std::string text;
    for (const std::string &line : lines)
        text += line;
    return text;
}

Location otherVolume()
{
    struct stat temporary{};
    struct stat shared{};
    const Location candidate = "/dev/shm";
    if (::stat(fs::temp_directory_path().c_str(), &temporary) != 0 || ::stat(candidate.c_str(), &shared) != 0 ||
        temporary.st_dev == shared.st_dev || ::access(candidate.c_str(), W_OK) != 0)
        return {};
    return candidate;
}

} // namespace brellin::test
