#include "Features/ThumbnailMaking.h"

#include "Disk/FileAttributes.h"
#include "Disk/FileTypes.h"

namespace brellin {

namespace {

using Outcome = Thumbnail::Outcome;

const FileType &typeOf(std::string_view name)
{
    return fileTypeOf(lowerExtensionOf(name));
}

DecoderRequest requestFor(const Location &file, int side)
{
    const FileType &type = typeOf(file.filename().native());
    const std::string size = std::to_string(side);
    if (type.conformsTo(TypeTrait::Pdf))
        return {decoderWords::pdfPage, {file.native(), "0", size}};
    if (type.conformsTo(TypeTrait::Movie))
        return {decoderWords::video, {file.native(), size}};
    return {decoderWords::picture, {file.native(), size}};
}

/// Caches and some file systems store whole seconds.
bool sameSecond(Instant a, Instant b)
{
    using std::chrono::seconds;
    return std::chrono::floor<seconds>(a) == std::chrono::floor<seconds>(b);
}

std::optional<Thumbnail> cached(const ThumbnailWish &wish, const ThumbnailCache &cache, Decoder &decoder,
                                const JobControl &control)
{
    const std::optional<ThumbnailCache::Found> found = cache.find(wish.entry, wish.modified, wish.side);
    if (found && found->ours)
        return Thumbnail{Outcome::Made, std::nullopt, found->png};
    if (found) {
        // Files of other programs are untrusted: decode them like any picture.
        Result<DecodedPicture> picture =
            decoder.askForPicture(requestFor(found->png, ThumbnailCache::keptSide(wish.side)), &control);
        if (picture)
            return Thumbnail{Outcome::Made, *std::move(picture), std::nullopt};
    }
    if (cache.hasFailed(wish.entry, wish.modified))
        return Thumbnail{Outcome::None, std::nullopt, std::nullopt};
    return std::nullopt;
}

Thumbnail decoded(const ThumbnailWish &wish, const FileState &state, const ThumbnailCache &cache, Decoder &decoder,
                  const JobControl &control)
{
    const int side = ThumbnailCache::keptSide(wish.side);
    Result<DecodedPicture> picture = decoder.askForPicture(requestFor(wish.entry, side), &control);
    if (control.cancelled())
        return {Outcome::Cancelled, std::nullopt, std::nullopt};
    const Result<FileAttributes> after = readAttributes(wish.entry);
    if (control.cancelled())
        return {Outcome::Cancelled, std::nullopt, std::nullopt};
    if (!after || FileState::of(*after) != state)
        return {Outcome::Changed, std::nullopt, std::nullopt};
    if (picture) {
        cache.store(wish.entry, wish.modified, side, *picture);
        return {Outcome::Made, *std::move(picture), std::nullopt};
    }
    if (!isUndecodable(picture.error()))
        return {Outcome::NotNow, std::nullopt, std::nullopt};
    cache.storeFailure(wish.entry, wish.modified);
    return {Outcome::None, std::nullopt, std::nullopt};
}

} // namespace

bool canHaveThumbnail(std::string_view name)
{
    const FileType &type = typeOf(name);
    return type.conformsTo(TypeTrait::Image) || type.conformsTo(TypeTrait::Pdf) || type.conformsTo(TypeTrait::Movie);
}

Thumbnail makeThumbnail(const ThumbnailWish &wish, const ThumbnailCache &cache, Decoder &decoder,
                        const JobControl &control)
{
    if (cache.holds(wish.entry) || !canHaveThumbnail(wish.entry.filename().native()))
        return {Outcome::None, std::nullopt, std::nullopt};
    const Result<FileAttributes> attributes = readAttributes(wish.entry);
    if (control.cancelled())
        return {Outcome::Cancelled, std::nullopt, std::nullopt};
    if (!attributes)
        return {Outcome::NotNow, std::nullopt, std::nullopt};
    if (!attributes->isFile() || attributes->size == 0)
        return {Outcome::None, std::nullopt, std::nullopt};
    if (!sameSecond(attributes->modified, wish.modified))
        return {Outcome::Changed, std::nullopt, std::nullopt};
    if (std::optional<Thumbnail> found = cached(wish, cache, decoder, control))
        return *std::move(found);
    if (control.cancelled())
        return {Outcome::Cancelled, std::nullopt, std::nullopt};
    return decoded(wish, FileState::of(*attributes), cache, decoder, control);
}

} // namespace brellin
