#include "FileOperations/ArchiveReader.h"

#include "System/DecoderProtocol.h"

#include <limits>
#include <utility>

#include <sys/stat.h>

namespace brellin {

using namespace archiveStream;

namespace {

Failure nonsense()
{
    return {QStringLiteral("Das Archiv ließ sich nicht lesen: Das Programm, das es liest, ist daran gescheitert."), {}};
}

Failure failureFrom(const QByteArray &words)
{
    constexpr qsizetype longestReason = 500;
    const QString text = QString::fromUtf8(words).simplified().left(longestReason);
    return text.isEmpty() ? nonsense() : Failure{text, {}};
}

} // namespace

Result<ArchiveReader> ArchiveReader::open(const Location &program, const Location &file, Wanted wanted,
                                          const JobControl &control)
{
    const EntryPlace place = TRY(openPlace(file));
    const Descriptor opened = TRY(openForReading(place.at()));
    struct stat status{};
    if (::fstat(opened.number(), &status) != 0)
        return failure(Failure::lastSystem());
    ArchiveProcess process = TRY(ArchiveProcess::start(
        program, wanted == Wanted::Names ? decoderWords::archiveNames : decoderWords::archiveContents, opened,
        control));
    return ArchiveReader(std::move(process), status.st_size);
}

Result<ArchiveReader::Heard> ArchiveReader::hear()
{
    if (m_ahead)
        return *std::exchange(m_ahead, std::nullopt);
    for (;;) {
        const Result<QByteArray> begin = m_process.read(headSize);
        if (!begin)
            return failure(begin.error().isCancelled() ? begin.error() : nonsense());
        const std::optional<Head> head = headFrom(begin->constData());
        if (!head)
            return failure(nonsense());
        Result<QByteArray> content = m_process.read(head->size);
        if (!content)
            return failure(content.error().isCancelled() ? content.error() : nonsense());
        if (head->kind == Message::Failure)
            return failure(failureFrom(*content));
        if (head->kind != Message::Position)
            return Heard{head->kind, *std::move(content)};
        m_read = numberFrom(*content).value_or(m_read);
    }
}

Result<std::optional<ArchivedEntry>> ArchiveReader::next()
{
    for (;;) {
        const Heard heard = TRY(hear());
        if (heard.kind == Message::End) {
            m_cut = !heard.content.isEmpty();
            return std::nullopt;
        }
        if (heard.kind == Message::Data || heard.kind == Message::Spoilt)
            continue; // content of an entry that the caller skipped
        std::optional<ArchivedEntry> entry = entryFrom(heard.content);
        if (!entry)
            return failure(nonsense());
        return entry;
    }
}

Result<ArchiveReader::Content>
ArchiveReader::content(const std::function<Result<void>(const char *bytes, std::size_t size, std::int64_t at)> &take)
{
    for (;;) {
        Heard heard = TRY(hear());
        if (heard.kind == Message::Spoilt)
            return Content::Spoilt;
        if (heard.kind != Message::Data) {
            m_ahead = std::move(heard);
            return Content::Whole;
        }
        const qsizetype size = heard.content.size() - numberSize;
        const std::optional<std::int64_t> at = numberFrom(heard.content);
        if (!at || *at > std::numeric_limits<std::int64_t>::max() - size)
            return failure(nonsense());
        TRY(take(heard.content.constData() + numberSize, static_cast<std::size_t>(size), *at));
    }
}

} // namespace brellin
