#include "ContentView/ContentSearch.h"

#include "ContentView/TextLines.h"
#include "Disk/BytesAt.h"
#include "Disk/CloudFiles.h"
#include "Disk/EntryPlace.h"
#include "Disk/FileTypes.h"
#include "System/Decoders.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>
#include <cerrno>
#include <vector>

namespace brellin {

namespace {

constexpr std::int64_t mostText = std::int64_t(64) * 1024 * 1024;
constexpr std::size_t pieceOfText = std::size_t(256) * 1024;
constexpr std::size_t firstPiece = std::size_t(16) * 1024; ///< shows whether it is text
constexpr int mostPages = 2000;

/// Not worth reading: known types that are neither text nor PDF.
bool isOtherType(const FileType &type)
{
    using enum TypeTrait;
    const bool other = type.conformsTo(Image) || type.conformsTo(Movie) || type.conformsTo(Audio) ||
                       type.conformsTo(Archive) || type.conformsTo(Presentation) || type.conformsTo(Spreadsheet);
    return other && !type.conformsTo(Text) && !type.conformsTo(Xml);
}

/// One page in one line, with words joined that were divided at the end of a line.
QString runningText(QString page)
{
    static constexpr std::array<char16_t, 3> dividing{u'\u0002', u'\u00AD', u'\uFFFE'};
    for (const QChar mark : dividing) {
        for (qsizetype at = page.indexOf(mark); at >= 0; at = page.indexOf(mark, at)) {
            qsizetype end = at + 1;
            while (end < page.size() && page.at(end).isSpace())
                ++end;
            page.remove(at, end - at);
        }
    }
    return page.simplified();
}

} // namespace

QString excerpt(const QString &text, const QString &wanted)
{
    constexpr qsizetype before = 30;
    constexpr qsizetype longest = 160;
    const QString line = text.simplified();
    const QString sought = folded(wanted);
    // The end of the first place. Folding changes lengths, so it has to be searched for.
    qsizetype low = 0;
    qsizetype high = line.size();
    while (low < high) {
        const qsizetype middle = (low + high) / 2;
        if (folded(line.left(middle)).contains(sought))
            high = middle;
        else
            low = middle + 1;
    }
    qsizetype from = std::max<qsizetype>(0, high - wanted.size() - before);
    if (from > 0)
        from = std::max(from, line.indexOf(u' ', from) + 1);
    if (from > high - wanted.size())
        from = std::max<qsizetype>(0, high - wanted.size());
    const QString dots = QStringLiteral("…");
    const bool goesOn = from + longest < line.size();
    return (from > 0 ? dots : QString()) + line.mid(from, longest) + (goesOn ? dots : QString());
}

Result<ContentAnswer> ContentSearch::find(const Location &file, const JobControl *control) const
{
    const FileType &type = fileTypeOf(lowerExtensionOf(file.filename().native()));
    if (isOtherType(type))
        return ContentAnswer{};
    const EntryPlace place = TRY(openPlace(file));
    const Descriptor opened = TRY(openForReading(place.at()));
    const FileAttributes attributes = TRY(attributesOf(opened));
    if (!attributes.isFile())
        return ContentAnswer{};
    if (isPlaceHolder(file, attributes))
        return failure(Failure::system(ENODATA));
    return type.conformsTo(TypeTrait::Pdf) ? findInPdf(file, control) : findInText(opened, control);
}

Result<ContentAnswer> ContentSearch::findInText(const Descriptor &file, const JobControl *control) const
{
    // In parts of long lines the text may be longer than `m_text`: decomposed, or with combined letters apart.
    const std::size_t overlap = 64 + static_cast<std::size_t>(m_text.size()) * 12;
    // Kept per thread, since allocating for thousands of small files is slow.
    thread_local std::vector<char> buffer(pieceOfText);
    std::size_t size = TRY(readAt(file.number(), buffer.data(), firstPiece, 0));
    ContentAnswer answer;
    const auto look = [&](std::string_view line, std::int64_t number) {
        if (m_wanted.matches(line))
            answer.passage = QStringLiteral("Zeile %1: %2").arg(number).arg(excerpt(shown(line), m_text));
        return answer.passage.isEmpty();
    };
    TextLines lines(QByteArray(buffer.data(), static_cast<qsizetype>(size)), overlap, look);
    if (!lines.isText())
        return answer;
    for (std::int64_t done = 0; size > 0 && answer.whole;) {
        if (control && control->cancelled())
            return failure(Failure::cancelled());
        if (!lines.add({buffer.data(), size}))
            return answer;
        done += static_cast<std::int64_t>(size);
        const bool enough = done >= mostText;
        const std::int64_t wanted = enough ? 1 : std::min(std::ssize(buffer), mostText - done);
        size = TRY(readAt(file.number(), buffer.data(), static_cast<std::size_t>(wanted), done));
        answer.whole = !enough || size == 0;
    }
    lines.end();
    if (!answer.passage.isEmpty())
        answer.whole = true;
    return answer;
}

Result<ContentAnswer> ContentSearch::findInPdf(const Location &file, const JobControl *control) const
{
    if (!m_decoder)
        return failure(unreadable());
    int page = 0;
    for (int pages = 1; page < std::min(pages, mostPages);) {
        const QByteArray json =
            TRY(m_decoder->ask({decoderWords::pdfPages, {file.native(), std::to_string(page)}}, control));
        const QJsonObject part = QJsonDocument::fromJson(json).object();
        const QJsonArray texts = part.value(u"texts").toArray();
        pages = part.value(u"pages").toInt();
        if (texts.isEmpty())
            return failure(undecodable());
        for (const QJsonValueConstRef one : texts) {
            const QString text = runningText(one.toString());
            ++page;
            if (m_wanted.matches(text.toStdString()))
                return ContentAnswer{QStringLiteral("Seite %1: %2").arg(page).arg(excerpt(text, m_text)), true};
        }
        if (page >= mostPages && pages > page)
            return ContentAnswer{{}, false};
    }
    return ContentAnswer{};
}

} // namespace brellin
