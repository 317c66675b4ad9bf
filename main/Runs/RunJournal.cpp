#include "Runs/RunJournal.h"

#include "Disk/FileAttributes.h"
#include "Runs/JournalLines.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace brellin {

namespace {

std::string_view prefixOf(RunJournal::Purpose purpose)
{
    return purpose == RunJournal::Purpose::Run ? "run-" : "undo-";
}

Location fileOf(const Location &folder, RunJournal::Purpose purpose, const QUuid &run)
{
    return folder /
           (std::string(prefixOf(purpose)) + run.toString(QUuid::WithoutBraces).toUpper().toStdString() + ".jsonl");
}

/// The run id in a journal's file name.
QUuid runOf(const Location &file)
{
    const QString name = QString::fromStdString(file.stem().native());
    return QUuid::fromString(name.sliced(name.indexOf(u'-') + 1));
}

Result<QByteArray> readNamed(const Location &file)
{
    Result<QByteArray> text = readLog(file);
    return text ? std::move(text) : failure({UnreadLog{file, text.error().message}.text(), text.error().code});
}

} // namespace

Result<RunJournal> RunJournal::open(const Location &file)
{
    FileLock lock = TRY(FileLock::tryNow(file));
    // Its owner may have removed the file between our open and lock.
    struct stat status{};
    if (::fstat(lock.descriptor(), &status) != 0 || status.st_nlink == 0)
        return failure(Failure::system(ENOENT));
    return RunJournal(file, std::move(lock));
}

Result<RunJournal> RunJournal::create(const Location &folder, Purpose purpose, const QUuid &run, Instant date)
{
    RunJournal journal = TRY(open(fileOf(folder, purpose, run)));
    journal.m_content = {.run = run, .date = date, .steps = {}, .folders = {}};
    TRY(journal.append(journalLines::head(run, date)));
    return journal;
}

Result<RunJournal> RunJournal::createOrContinue(const Location &folder, const QUuid &run, Instant date)
{
    const Location file = fileOf(folder, Purpose::Undo, run);
    Result<RunJournal> found = entryExists(file) ? takeOver(file) : create(folder, Purpose::Undo, run, date);
    // A torn head: nothing was written after it.
    if (found && found->m_content.run != run) {
        TRY(found->discard());
        return create(folder, Purpose::Undo, run, date);
    }
    return found;
}

Result<RunJournal> RunJournal::takeOver(const Location &file)
{
    RunJournal journal = TRY(open(file));
    const QByteArray text = TRY(readNamed(file));
    journal.m_content = journalLines::read(text);
    if (journal.m_content.damaged && journal.m_content.run.isNull()) {
        journal.m_content.run = runOf(file);
        const Result<FileAttributes> attributes = readAttributes(file);
        journal.m_content.date = attributes ? attributes->modified : Instant();
    }
    journal.m_planned = journal.m_content.steps.size();
    // Cut off a torn last line; otherwise the next one would be appended to it.
    const qsizetype whole = text.lastIndexOf('\n') + 1;
    if (whole < text.size() && ::ftruncate(journal.m_lock.descriptor(), whole) != 0)
        return failure(Failure::lastSystem());
    journal.m_size = ::lseek(journal.m_lock.descriptor(), 0, SEEK_END);
    if (journal.m_size < 0)
        return failure(Failure::lastSystem());
    return journal;
}

std::vector<Location> RunJournal::find(const Location &folder, Purpose purpose)
{
    std::vector<Location> files;
    std::error_code error;
    for (std::filesystem::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
        const std::string name = it->path().filename().native();
        if (name.starts_with(prefixOf(purpose)) && name.ends_with(".jsonl"))
            files.push_back(it->path());
    }
    std::ranges::sort(files);
    return files;
}

std::vector<UnreadLog> RunJournal::unread(const Location &folder)
{
    std::vector<UnreadLog> found;
    if (std::optional<UnreadLog> unread = unreadFolder(folder))
        found.push_back(*std::move(unread));
    for (const Purpose purpose : {Purpose::Run, Purpose::Undo}) {
        for (const Location &file : find(folder, purpose)) {
            const Result<QByteArray> text = readLog(file);
            if (!text && !text.error().is(std::errc::no_such_file_or_directory))
                found.push_back({file, text.error().message});
        }
    }
    return found;
}

/// Writes the buffered results first. If that fails, recovery determines them from the disk.
Result<void> RunJournal::append(const QByteArray &lines)
{
    if (m_renamed.isEmpty())
        return write(lines);
    const QByteArray all = std::exchange(m_renamed, {}) + lines;
    m_renamedSteps = 0;
    return write(all);
}

Result<void> RunJournal::write(const QByteArray &lines)
{
    for (qsizetype at = 0; at < lines.size();) {
        const ssize_t written =
            ::write(m_lock.descriptor(), lines.constData() + at, static_cast<std::size_t>(lines.size() - at));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0) {
            const Failure why = Failure::lastSystem();
            // Cut off a partial line (disk full), or it would spoil the next one.
            if (at > 0 && ::ftruncate(m_lock.descriptor(), m_size) == 0)
                ::lseek(m_lock.descriptor(), m_size, SEEK_SET);
            return failure(why);
        }
        at += written;
    }
    m_size += lines.size();
    return {};
}

Result<void> RunJournal::flush()
{
    if (::fdatasync(m_lock.descriptor()) != 0)
        return failure(Failure::lastSystem());
    return {};
}

Result<std::size_t> RunJournal::plan(std::span<const PlannedStep> steps)
{
    QByteArray lines;
    const std::size_t first = m_planned;
    std::size_t number = first;
    for (const PlannedStep &step : steps)
        lines += journalLines::plan(number++, step);
    if (m_size + lines.size() > longestLog / 2)
        return failure(Failure{QStringLiteral("Das Tagebuch der Aktion ist voll."),
                               std::make_error_code(std::errc::file_too_large)});
    TRY(append(lines));
    m_planned = number;
    TRY(flush());
    return first;
}

Result<void> RunJournal::planAgain(std::size_t step, const PlannedStep &planned)
{
    TRY(append(journalLines::planAgain(step, planned)));
    return flush();
}

Result<void> RunJournal::folder(const Location &folder)
{
    return append(journalLines::folder(folder));
}

Result<void> RunJournal::copying(std::size_t step, const Location &temporary)
{
    return append(journalLines::copying(step, temporary));
}

Result<void> RunJournal::reserving(std::size_t step, const NameReserve &reserve)
{
    return append(journalLines::reserving(step, reserve));
}

Result<void> RunJournal::copied(std::size_t step, const EntryMark &copy)
{
    TRY(append(journalLines::copied(step, copy)));
    return flush();
}

Result<void> RunJournal::done(std::size_t step, const JournalStep &result, const StepMarks &marks)
{
    return append(journalLines::done(step, result, marks));
}

Result<void> RunJournal::renamed(std::size_t step, const JournalStep &result, const StepMarks &marks)
{
    m_renamed += journalLines::done(step, result, marks);
    return ++m_renamedSteps < mostRenamed ? Result<void>() : writeRenamed();
}

Result<void> RunJournal::writeRenamed()
{
    return append({});
}

Result<void> RunJournal::failed(std::size_t step)
{
    return append(journalLines::failed(step));
}

Result<void> RunJournal::keepAside()
{
    const Location aside = m_file.native() + ".ungeklärt";
    if (::rename(m_file.c_str(), aside.c_str()) != 0)
        return failure(Failure::lastSystem());
    return {};
}

Result<void> RunJournal::discard()
{
    if (m_content.damaged)
        return keepAside();
    if (::unlink(m_file.c_str()) != 0 && errno != ENOENT)
        return failure(Failure::lastSystem());
    return {};
}

} // namespace brellin
