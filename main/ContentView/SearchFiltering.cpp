#include "ContentView/SearchFiltering.h"

#include "Base/German.h"
#include "Disk/FileTypes.h"

#include <algorithm>
#include <iterator>

namespace brellin {

namespace {

using Kind = SearchFilters::Kind;
using Age = SearchFilters::Age;
using Size = SearchFilters::Size;

/// The category of files that a kind names; empty for the kinds that are no category.
QString categoryNamed(Kind kind)
{
    switch (kind) {
    case Kind::Images:
        return QStringLiteral("Bilder");
    case Kind::Videos:
        return QStringLiteral("Videos");
    case Kind::Music:
        return QStringLiteral("Musik");
    case Kind::Documents:
        return QStringLiteral("Dokumente");
    case Kind::Archives:
        return QStringLiteral("Archive");
    case Kind::Programs:
        return QStringLiteral("Programme");
    case Kind::Others:
        return QStringLiteral("Sonstige");
    case Kind::Any:
    case Kind::Folders:
    case Kind::Pdf:
        break;
    }
    return {};
}

bool isOfKind(const FileItem &item, Kind kind)
{
    if (kind == Kind::Any || kind == Kind::Folders || item.isFolder)
        return kind == Kind::Any || (kind == Kind::Folders && item.isFolder);
    const std::string_view extension = extensionOf(item.nameBytes);
    return kind == Kind::Pdf ? fileTypeOf(extension).conformsTo(TypeTrait::Pdf)
                             : fileCategory(extension) == categoryNamed(kind);
}

bool isOfAge(const FileItem &item, Age age, Instant now)
{
    if (age == Age::Any)
        return true;
    const qint64 days = localDay(item.modified).daysTo(localDay(now));
    switch (age) {
    case Age::Today:
        return days < 1;
    case Age::Week:
        return days < 7;
    case Age::Month:
        return days < 30;
    case Age::Year:
        return days < 365;
    case Age::Older:
    case Age::Any:
        break;
    }
    return days >= 365;
}

bool isOfSize(const FileItem &item, Size size)
{
    constexpr std::int64_t megabyte = 1'000'000;
    if (size == Size::Any || item.isFolder)
        return size == Size::Any;
    switch (size) {
    case Size::Below1MB:
        return item.size < megabyte;
    case Size::From1MB:
        return item.size >= megabyte;
    case Size::From10MB:
        return item.size >= 10 * megabyte;
    case Size::From100MB:
        return item.size >= 100 * megabyte;
    case Size::From1GB:
    case Size::Any:
        break;
    }
    return item.size >= 1000 * megabyte;
}

} // namespace

bool passes(const FileItem &item, const SearchFilters &filters, Instant now)
{
    return isOfKind(item, filters.kind) && isOfSize(item, filters.size) && isOfAge(item, filters.age, now);
}

bool covers(const SearchFilters &wide, const SearchFilters &narrow)
{
    const auto isWider = [](auto one, auto other) { return one == decltype(one)::Any || one == other; };
    return isWider(wide.kind, narrow.kind) && isWider(wide.age, narrow.age) && isWider(wide.size, narrow.size);
}

FileItems narrowed(const FileItems &items, const SearchFilters &filters, Instant now)
{
    if (!filters.narrow())
        return items;
    std::vector<FileItem> kept;
    std::ranges::copy_if(items, std::back_inserter(kept),
                         [&](const FileItem &item) { return passes(item, filters, now); });
    return FileItems(std::move(kept));
}

} // namespace brellin
