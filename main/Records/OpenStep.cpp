#include "Records/OpenStep.h"

#include "Records/OpenFile.h"
#include "Records/StepLines.h"
#include "Records/StepRecords.h"
#include "System/PrivateFolders.h"

#include <algorithm>
#include <map>
#include <utility>

#include <unistd.h>

namespace brellin {

OpenStep::OpenStep(StepRecords &records, RecordedStep step, Way way)
    : m_records(&records)
    , m_step(std::move(step))
    , m_way(way)
{
    if (const Result<void> noted = note(); !noted)
        m_records->tell(noted.error());
}

OpenStep::OpenStep(OpenStep &&other) noexcept
    : m_records(std::exchange(other.m_records, nullptr))
    , m_step(std::move(other.m_step))
    , m_way(other.m_way)
    , m_file(std::exchange(other.m_file, {}))
    , m_lock(std::move(other.m_lock))
{
}

OpenStep::~OpenStep()
{
    removeNote();
}

void OpenStep::removeNote()
{
    if (!m_file.empty())
        ::unlink(std::exchange(m_file, {}).c_str());
}

Result<void> OpenStep::note()
{
    TRY(createPrivateFolders(m_records->folder()));
    const Location file = StepRecords::newOpenFile(m_records->folder());
    m_lock = TRY(FileLock::wait(file, std::chrono::seconds(1)));
    m_file = file;
    TRY(appendAll(m_lock.descriptor(), m_way == Way::Forth ? stepLines::done(m_step) : stepLines::takingBack(m_step)));
    return ::fdatasync(m_lock.descriptor()) == 0 ? Result<void>() : failure(Failure::lastSystem());
}

void OpenStep::settle(std::vector<StepEntry> done)
{
    StepRecords *const records = std::exchange(m_records, nullptr);
    if (!records)
        return;
    if (const Result<void> written = done.empty() ? Result<void>() : records->append(lineOf(std::move(done)));
        !written) {
        records->tell(written.error());
        // Keep the note: settle() then determines from disk what was done.
        m_file.clear();
    }
    removeNote();
}

QByteArray OpenStep::lineOf(std::vector<StepEntry> done) const
{
    if (m_way == Way::Back) {
        std::vector<Location> places;
        std::ranges::transform(done, std::back_inserter(places), &StepEntry::to);
        return stepLines::takenBack(m_step.id, m_step.date, places);
    }
    std::map<Location, EntryMark> before;
    for (const StepEntry &entry : m_step.entries) {
        if (entry.was)
            before.emplace(entry.from, *entry.was);
    }
    for (StepEntry &entry : done) {
        if (const auto known = before.find(entry.from); known != before.end() && !entry.was)
            entry.was = known->second;
    }
    return stepLines::done({m_step.id, m_step.date, m_step.kind, std::move(done)});
}

} // namespace brellin
