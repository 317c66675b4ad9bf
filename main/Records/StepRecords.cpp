#include "Records/StepRecords.h"

#include "Base/Descriptor.h"
#include "Records/OpenFile.h"
#include "Records/SettledByDisk.h"
#include "Records/StepLines.h"
#include "System/AtomicWrite.h"
#include "System/LogReading.h"
#include "System/PrivateFolders.h"

#include <algorithm>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brellin {

namespace {

constexpr std::string_view openPrefix = "offen-";
constexpr std::string_view asidePrefix = "verlauf.beschädigt-";
constexpr std::chrono::seconds patienceWithOthers{10};
/// Number of steps written between two checks for old ones.
constexpr int tidyEvery = 500;
constexpr qint64 mostBytes = qint64(64) << 20U;

std::vector<Location> filesIn(const Location &folder, std::string_view prefix)
{
    std::vector<Location> files;
    std::error_code error;
    for (std::filesystem::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
        if (it->path().filename().native().starts_with(prefix))
            files.push_back(it->path());
    }
    std::ranges::sort(files);
    return files;
}

/// Fails for a file that its owner removed between open and lock, and for a recent empty one, whose owner may be about
/// to lock it.
Result<FileLock> lockOfDead(const Location &file)
{
    constexpr time_t beginning = 60;
    FileLock lock = TRY(FileLock::tryNow(file));
    struct stat status{};
    if (::fstat(lock.descriptor(), &status) != 0 || status.st_nlink == 0)
        return failure(Failure::system(ENOENT));
    if (status.st_size == 0 && status.st_mtime > ::time(nullptr) - beginning)
        return failure(Failure::system(EAGAIN));
    return lock;
}

std::uintmax_t sizeOf(const Location &file)
{
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    return error ? 0 : size;
}

/// Whether a file should be rewritten without its old and surplus steps. Decodes only the first line, since most files
/// need nothing.
bool isTooMuch(const QByteArray &text, Instant now)
{
    constexpr std::chrono::days patience{7};
    const stepLines::Content first = stepLines::read(text.first(text.indexOf('\n') + 1));
    const bool isOld = !first.steps.empty() && first.steps.front().date < now - StepRecords::longestKept - patience;
    return isOld || text.size() > mostBytes ||
           text.count('\n') > static_cast<qsizetype>(StepRecords::mostSteps + StepRecords::mostSteps / 20);
}

/// Drops old and surplus steps; `steps` is sorted by date.
void dropOld(std::vector<RecordedStep> &steps, Instant now)
{
    const auto old = [now](const RecordedStep &step) { return step.date < now - StepRecords::longestKept; };
    std::erase_if(steps, old);
    if (steps.size() > StepRecords::mostSteps)
        steps.erase(steps.begin(), steps.end() - static_cast<std::ptrdiff_t>(StepRecords::mostSteps));
}

/// The newest steps that fit, as lines.
QByteArray textOf(const std::vector<RecordedStep> &steps)
{
    std::vector<QByteArray> lines;
    qint64 size = 0;
    for (auto step = steps.rbegin(); step != steps.rend() && size < mostBytes / 2; ++step) {
        lines.push_back(stepLines::done(*step));
        size += lines.back().size();
    }
    QByteArray text;
    for (auto line = lines.rbegin(); line != lines.rend(); ++line)
        text += *line;
    return text;
}

/// Removes a torn last line, which would corrupt the next one.
Result<void> cutTornLine(int descriptor, const Location &file)
{
    const off_t size = ::lseek(descriptor, 0, SEEK_END);
    char last = '\n';
    if (size <= 0 || (::pread(descriptor, &last, 1, size - 1) == 1 && last == '\n'))
        return {};
    const QByteArray text = TRY(readLog(file));
    return ::ftruncate(descriptor, text.lastIndexOf('\n') + 1) == 0 ? Result<void>() : failure(Failure::lastSystem());
}

} // namespace

Result<void> appendAll(int descriptor, const QByteArray &bytes)
{
    const off_t before = ::lseek(descriptor, 0, SEEK_END);
    for (qsizetype at = 0; at < bytes.size();) {
        const ssize_t written =
            ::write(descriptor, bytes.constData() + at, static_cast<std::size_t>(bytes.size() - at));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0) {
            const Failure why = Failure::lastSystem();
            // If this fails, the next writer removes the torn line.
            (void)!::ftruncate(descriptor, before);
            return failure(why);
        }
        at += written;
    }
    return {};
}

const SwitchSetting StepRecords::setting{QStringLiteral("keepHistory"), true};

StepRecords::StepRecords(Location folder, const UserDefaults &defaults, const Clock &clock)
    : m_folder(std::move(folder))
    , m_defaults(defaults)
    , m_clock(clock)
{
}

bool StepRecords::on() const
{
    return setting.isOn(m_defaults);
}

OpenStep StepRecords::begin(StepKind kind, std::vector<StepEntry> entries, const QUuid &id)
{
    return on() ? OpenStep(*this, {id, m_clock.now(), kind, std::move(entries)}, OpenStep::Way::Forth) : OpenStep();
}

OpenStep StepRecords::takeBack(const QUuid &step, StepKind kind, std::vector<StepEntry> entries)
{
    if (!on() && !mayHold(step))
        return {};
    return OpenStep(*this, {step, m_clock.now(), kind, std::move(entries)}, OpenStep::Way::Back);
}

bool StepRecords::mayHold(const QUuid &step) const
{
    const KeptSteps kept = read();
    return kept.condition.state == StoredState::Unreadable ||
           std::ranges::find(kept.steps, step, &RecordedStep::id) != kept.steps.end();
}

Location StepRecords::newOpenFile(const Location &folder)
{
    return folder / (std::string(openPrefix) + QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString());
}

KeptSteps StepRecords::read() const
{
    KeptSteps kept{{}, {QStringLiteral("verlauf"), file(), StoredState::Absent, {}, false}};
    const Result<QByteArray> text = readLog(file());
    if (!text) {
        if (!text.error().is(std::errc::no_such_file_or_directory))
            kept.condition = {kept.condition.list, file(), StoredState::Unreadable, {text.error().message}, false};
        return kept;
    }
    stepLines::Content content = stepLines::read(*text);
    const bool whole = content.lost.isEmpty();
    m_damaged = !whole;
    kept.condition.state =
        whole ? StoredState::Whole : (content.steps.empty() ? StoredState::Damaged : StoredState::Partly);
    kept.condition.lost = content.lost.first(std::min<qsizetype>(content.lost.size(), 3));
    dropOld(content.steps, m_clock.now());
    kept.steps = std::move(content.steps);
    std::ranges::reverse(kept.steps);
    return kept;
}

Result<FileLock> StepRecords::lock() const
{
    TRY(createPrivateFolders(m_folder));
    return FileLock::wait(m_folder / "verlauf.lock", patienceWithOthers);
}

Result<void> StepRecords::append(const QByteArray &line)
{
    const FileLock held = TRY(lock());
    const bool isTurn = m_written++ % tidyEvery == 0;
    if (isTurn || m_damaged || sizeOf(file()) > mostBytes)
        TRY(tidy());
    const Descriptor open(::open(file().c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!open.isOpen())
        return failure(Failure::lastSystem());
    TRY(cutTornLine(open.number(), file()));
    TRY(appendAll(open.number(), line));
    return ::fdatasync(open.number()) == 0 ? Result<void>() : failure(Failure::lastSystem());
}

/// Requires the lock. Keeps a damaged file, and one too large to be read, under another name.
Result<void> StepRecords::tidy()
{
    const Instant now = m_clock.now();
    const Location aside = m_folder / (std::string(asidePrefix) + isoText(now).toStdString() + ".jsonl");
    const Result<QByteArray> text = readLog(file());
    if (!text && text.error().is(std::errc::no_such_file_or_directory))
        return {};
    if (!text && text.error().is(std::errc::file_too_large))
        return ::link(file().c_str(), aside.c_str()) == 0 && ::unlink(file().c_str()) == 0
                   ? Result<void>()
                   : failure(Failure::lastSystem());
    if (!m_damaged.exchange(false) && !isTooMuch(TRY(text), now))
        return {};
    stepLines::Content content = stepLines::read(TRY(text));
    dropOld(content.steps, now);
    if (!content.lost.isEmpty() && ::link(file().c_str(), aside.c_str()) != 0 && errno != EEXIST)
        return failure(Failure::lastSystem());
    return writeAtomically(file(), textOf(content.steps));
}

void StepRecords::settle(const Trash &trash)
{
    for (const Location &file : filesIn(m_folder, openPrefix))
        settleOne(file, trash);
}

void StepRecords::settleOne(const Location &file, const Trash &trash)
{
    const Result<FileLock> dead = lockOfDead(file);
    const Result<QByteArray> text = dead ? readLog(file) : failure(dead.error());
    if (!text)
        return;
    const stepLines::Content note = stepLines::read(*text);
    QByteArray lines;
    for (RecordedStep step : note.steps) {
        step.entries = settledByDisk(step, trash);
        lines += step.entries.empty() ? QByteArray() : stepLines::done(step);
    }
    for (const RecordedStep &step : note.takingBack) {
        std::vector<Location> places;
        std::ranges::transform(takenBackByDisk(step), std::back_inserter(places), &StepEntry::to);
        lines += places.empty() ? QByteArray() : stepLines::takenBack(step.id, step.date, places);
    }
    if (!lines.isEmpty()) {
        if (const Result<void> written = append(lines); !written)
            return tell(written.error());
    }
    ::unlink(file.c_str());
}

Result<void> StepRecords::clear()
{
    const FileLock held = TRY(lock());
    for (const Location &note : filesIn(m_folder, openPrefix)) {
        if (lockOfDead(note))
            ::unlink(note.c_str());
    }
    for (const Location &aside : filesIn(m_folder, asidePrefix))
        ::unlink(aside.c_str());
    if (::unlink(file().c_str()) != 0 && errno != ENOENT)
        return failure(Failure::lastSystem());
    return {};
}

void StepRecords::onFailure(std::function<void(const QString &)> told)
{
    const std::scoped_lock guard(m_mutex);
    m_told = std::move(told);
    if (m_untold && m_told)
        m_told(*std::exchange(m_untold, std::nullopt));
}

void StepRecords::tell(const Failure &why)
{
    const std::scoped_lock guard(m_mutex);
    if (std::exchange(m_failed, true))
        return;
    const QString text = QStringLiteral("Im Verlauf fehlt, was gerade geschah: ") + why.message;
    if (m_told)
        m_told(text);
    else
        m_untold = text;
}

std::optional<QString> StepRecords::takeFailure()
{
    const std::scoped_lock guard(m_mutex);
    return std::exchange(m_untold, std::nullopt);
}

void StepRecords::remember(const Location &place, const QUuid &step)
{
    const std::scoped_lock guard(m_mutex);
    m_places[place] = step;
}

QUuid StepRecords::stepAt(const Location &place)
{
    const std::scoped_lock guard(m_mutex);
    const auto known = m_places.extract(place);
    return known.empty() ? QUuid() : known.mapped();
}

} // namespace brellin
