#include "Disk/CopyCrew.h"

#include <algorithm>
#include <chrono>
#include <system_error>
#include <utility>

namespace brellin {

namespace {

/// From this many files on, use a second thread.
constexpr std::size_t manyFiles = 32;
/// Queued folders, each with two open descriptors.
constexpr std::size_t mostWaiting = 8;
constexpr std::size_t filesAtOnce = 16;

} // namespace

CopyCrew::~CopyCrew()
{
    stop();
}

bool CopyCrew::wants(std::size_t files)
{
    m_files += files;
    return files > 0 && m_files >= manyFiles && std::thread::hardware_concurrency() > 1;
}

bool CopyCrew::isFull()
{
    const std::scoped_lock lock(m_mutex);
    return m_waiting.size() >= mostWaiting;
}

void CopyCrew::add(std::shared_ptr<CopyFolder> folder)
{
    startHelper();
    *folder->pending = folder->files.size() + 1;
    {
        const std::scoped_lock lock(m_mutex);
        m_waiting.push_back(std::move(folder));
    }
    m_changed.notify_all();
}

Result<void> CopyCrew::makeRoom(CopyFile &own)
{
    while (isFull()) {
        if (const std::optional<Portion> portion = take(Take::Newest))
            TRY(work(*portion, own, &m_current));
    }
    m_current.reset();
    return {};
}

void CopyCrew::startHelper()
{
    if (m_helper.joinable())
        return;
    try {
        m_helper = std::jthread([this] { help(); });
    } catch (const std::system_error &) {
        // Out of threads: the walking thread copies everything itself.
    }
}

std::optional<CopyCrew::Portion> CopyCrew::take(Take which)
{
    const std::scoped_lock lock(m_mutex);
    if (m_waiting.empty())
        return std::nullopt;
    const auto at = which == Take::Oldest ? m_waiting.begin() : std::prev(m_waiting.end());
    CopyFolder &folder = **at;
    const std::size_t from = folder.next;
    folder.next = std::min(folder.files.size(), from + filesAtOnce);
    Portion portion{*at, from, folder.next};
    if (folder.next == folder.files.size())
        m_waiting.erase(at);
    m_working = m_working || which == Take::Oldest;
    return portion;
}

void CopyCrew::help()
{
    for (;;) {
        {
            std::unique_lock lock(m_mutex);
            m_working = false;
            m_changed.notify_all();
            m_changed.wait(lock, [this] { return m_over || !m_waiting.empty(); });
            if (m_over)
                return;
        }
        const std::optional<Portion> portion = take(Take::Oldest);
        const Result<void> done = portion ? work(*portion, m_helping, nullptr) : Result<void>();
        if (done)
            continue;
        m_common.pulse.stop();
        const std::scoped_lock lock(m_mutex);
        m_failure = done.error();
        m_working = false;
        m_over = true;
        m_changed.notify_all();
        return;
    }
}

/// Stores the name of each file in `current`, if given.
Result<void> CopyCrew::work(const Portion &portion, CopyFile &file, std::optional<std::string> *current) const
{
    CopyFolder &folder = *portion.folder;
    const CopyPlace place = folder.place();
    for (std::size_t i = portion.from; i < portion.end; ++i) {
        const std::string &name = folder.files[i];
        if (current)
            *current = folder.relative.empty() ? name : folder.relative + "/" + name;
        TRY(m_common.pulse.beat());
        const NameIn from{folder.source.number(), name.c_str()};
        const NameIn to{folder.destination.number(), name.c_str()};
        if (const auto done = file.run(from, to, place); !done)
            return brellin::failure(namedFailure(done.error(), folder.relative, name));
    }
    return copied(folder, portion.end - portion.from, file);
}

Result<void> CopyCrew::copied(CopyFolder &folder, std::size_t number, CopyFile &file) const
{
    if (folder.pending->fetch_sub(number) != number)
        return {};
    Result<void> closed =
        file.closeFolder(folder.source.number(), folder.destination.number(), folder.status, folder.path);
    if (closed || folder.relative.empty())
        return closed;
    const Location relative(folder.relative);
    return brellin::failure(
        namedFailure(closed.error(), relative.parent_path().native(), relative.filename().native()));
}

/// Waits a moment. Whether the helper is still working.
bool CopyCrew::awaitHelper()
{
    std::unique_lock lock(m_mutex);
    return !m_changed.wait_for(lock, std::chrono::milliseconds(20), [this] { return !m_working; });
}

Result<void> CopyCrew::finish(CopyFile &own)
{
    while (const std::optional<Portion> portion = take(Take::Newest))
        TRY(work(*portion, own, &m_current));
    m_current.reset();
    while (awaitHelper())
        TRY(m_common.pulse.beat());
    stop();
    own.metadata().include(m_helping.metadata());
    return m_failure ? brellin::failure(*m_failure) : Result<void>();
}

void CopyCrew::stop()
{
    {
        const std::scoped_lock lock(m_mutex);
        if (m_working || !m_waiting.empty())
            m_common.pulse.stop();
        m_over = true;
        m_waiting.clear();
    }
    m_changed.notify_all();
    if (m_helper.joinable())
        m_helper.join();
}

Failure namedFailure(Failure why, std::string folder, std::string_view name)
{
    if (why.isCancelled())
        return why;
    constexpr std::size_t readable = 160;
    const bool fits = !folder.empty() && folder.size() + name.size() <= readable;
    const std::string path = fits ? folder.append("/").append(name) : std::string(name);
    why.message = QStringLiteral("„%1“: %2").arg(shown(std::string_view(path)), why.message);
    return why;
}

} // namespace brellin
