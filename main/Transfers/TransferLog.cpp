#include "Transfers/TransferLog.h"

#include "Disk/FileAttributes.h"
#include "Disk/FreeName.h"

#include <QByteArrayList>
#include <QUuid>

#include <algorithm>
#include <cctype>
#include <iterator>

#include <sys/stat.h>
#include <unistd.h>

namespace brellin {

namespace {

constexpr std::size_t idLength = 8;

std::string freshId()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).left(idLength).toUpper().toStdString();
}

bool isLinked(int descriptor)
{
    struct stat status{};
    return ::fstat(descriptor, &status) == 0 && status.st_nlink > 0;
}

/// One line for each place; a name may hold a line break, so its bytes are percent-encoded.
QByteArray lineOf(const Location &place)
{
    return QByteArray::fromStdString(place.native()).toPercentEncoding("/") + '\n';
}

std::vector<Location> placesIn(const QByteArray &log)
{
    std::vector<Location> places;
    for (const QByteArray &line : log.split('\n')) {
        if (!line.isEmpty())
            places.emplace_back(QByteArray::fromPercentEncoding(line).toStdString());
    }
    return places;
}

} // namespace

bool TransferLog::isTemporaryName(std::string_view name)
{
    if (!name.starts_with(copyPrefix))
        return false;
    name.remove_prefix(copyPrefix.size());
    return name.size() > idLength + 1 && name[idLength] == '-' &&
           std::ranges::all_of(name.substr(0, idLength), [](unsigned char c) { return std::isxdigit(c) != 0; });
}

Location TransferLog::temporaryFor(const Location &dst)
{
    if (!m_lock.held())
        open();
    const Location folder = dst.parent_path();
    const std::string head = std::string(copyPrefix) + freshId() + "-";
    const std::size_t room = nameLimit(folder) - std::min(nameLimit(folder) - 1, head.size());
    const Location place = folder / (head + fittingName(dst.filename().native(), room));
    m_noted.push_back(place);
    if (m_lock.held()) {
        const QByteArray line = lineOf(place);
        // What could not be written is missing for others only, and only until the entry is a day old.
        [[maybe_unused]] const ssize_t written =
            ::write(m_lock.descriptor(), line.constData(), static_cast<std::size_t>(line.size()));
    }
    return place;
}

void TransferLog::open()
{
    if (m_folder.empty() || !createPrivateFolders(m_folder))
        return;
    // Who reads the logs removes a dead one, and for a moment this one looks like that.
    for (int attempt = 0; attempt < 3; ++attempt) {
        m_file = m_folder / (freshId() + ".log");
        Result<FileLock> lock = FileLock::tryNow(m_file);
        if (lock && isLinked(lock->descriptor())) {
            m_lock = std::move(*lock);
            return;
        }
    }
}

TransferLog::~TransferLog()
{
    if (m_lock.held() && std::ranges::none_of(m_noted, entryExists))
        ::unlink(m_file.c_str());
}

LoggedNames LoggedNames::read(const Location &folder)
{
    LoggedNames names;
    std::error_code none;
    for (const std::filesystem::directory_entry &entry : std::filesystem::directory_iterator(folder, none)) {
        if (entry.path().extension() != ".log")
            continue;
        const Result<FileLock> lock = FileLock::tryNow(entry.path());
        const std::vector<Location> places = placesIn(readWhole(entry.path()).value_or(QByteArray()));
        std::vector<std::string> &known = lock ? names.dead : names.living;
        for (const Location &place : places)
            known.push_back(place.filename().native());
        if (!lock)
            continue;
        const std::size_t before = names.left.size();
        std::ranges::copy_if(places, std::back_inserter(names.left), entryExists);
        if (names.left.size() == before)
            ::unlink(entry.path().c_str());
    }
    return names;
}

} // namespace brellin
