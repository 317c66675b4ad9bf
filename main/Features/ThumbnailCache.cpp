#include "Features/ThumbnailCache.h"

#include "Base/Edition.h"
#include "System/PrivateFolders.h"

#include <QCryptographicHash>
#include <QStandardPaths>

#include <array>
#include <atomic>
#include <cstdio>
#include <memory>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

namespace {

struct Kind {
    int side;
    const char *folder;
};
constexpr auto kinds = std::to_array<Kind>({{128, "normal"}, {256, "large"}, {512, "x-large"}, {1024, "xx-large"}});

/// Characters not to be escaped in URIs, as agreed with other programs.
constexpr const char *plainInAddresses = "/!$&'()*+,:=@";

const QByteArray uriText = QByteArrayLiteral("Thumb::URI");
const QByteArray modifiedText = QByteArrayLiteral("Thumb::MTime");
const QByteArray softwareText = QByteArrayLiteral("Software");

QByteArray secondsOf(Instant modified)
{
    return QByteArray::number(
        static_cast<qint64>(std::chrono::floor<std::chrono::seconds>(modified).time_since_epoch().count()));
}

PngTexts textsFor(const Location &file, Instant modified)
{
    return {{uriText, ThumbnailCache::uri(file)},
            {modifiedText, secondsOf(modified)},
            {softwareText, Edition::name().toUtf8()}};
}

bool isAbout(const PngTexts &texts, const Location &file, Instant modified)
{
    return texts.value(uriText) == ThumbnailCache::uri(file) && texts.value(modifiedText) == secondsOf(modified);
}

bool writeNew(const Location &file, const QByteArray &content)
{
    const int open = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (open < 0)
        return false;
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> stream(::fdopen(open, "wb"), std::fclose);
    const auto size = static_cast<std::size_t>(content.size());
    return stream && std::fwrite(content.constData(), 1, size, stream.get()) == size && std::fflush(stream.get()) == 0;
}

/// Replaces a file atomically. Not flushed, since a lost thumbnail is simply made again.
bool replace(const Location &file, const QByteArray &content)
{
    static std::atomic<unsigned> count = 0;
    if (!createPrivateFolders(file.parent_path()))
        return false;
    Location temporary = file;
    temporary += "." + std::to_string(::getpid()) + "-" + std::to_string(++count);
    std::error_code error;
    if (writeNew(temporary, content)) {
        std::filesystem::rename(temporary, file, error);
        if (!error)
            return true;
    }
    std::filesystem::remove(temporary, error);
    return false;
}

} // namespace

Location ThumbnailCache::usualFolder()
{
    return Location(QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation).toStdString()) /
           "thumbnails";
}

int ThumbnailCache::keptSide(int wanted)
{
    for (const Kind &kind : kinds) {
        if (kind.side >= wanted)
            return kind.side;
    }
    return kinds.back().side;
}

QByteArray ThumbnailCache::uri(const Location &file)
{
    return "file://" + QByteArray::fromStdString(file.native()).toPercentEncoding(plainInAddresses);
}

Location ThumbnailCache::place(const char *kind, const Location &file) const
{
    const QByteArray name = QCryptographicHash::hash(uri(file), QCryptographicHash::Md5).toHex() + ".png";
    return m_folder / kind / name.toStdString();
}

Location ThumbnailCache::failurePlace(const Location &file) const
{
    return place(("fail/" + Edition::name().toLower().toStdString()).c_str(), file);
}

std::optional<ThumbnailCache::Found> ThumbnailCache::find(const Location &file, Instant modified, int side) const
{
    for (const Kind &kind : kinds) {
        if (kind.side < keptSide(side))
            continue;
        const Location png = place(kind.folder, file);
        const PngTexts texts = pngTexts(png);
        if (isAbout(texts, file, modified))
            return Found{png, texts.value(softwareText) == Edition::name().toUtf8()};
    }
    return std::nullopt;
}

bool ThumbnailCache::hasFailed(const Location &file, Instant modified) const
{
    return isAbout(pngTexts(failurePlace(file)), file, modified);
}

std::optional<Location> ThumbnailCache::store(const Location &file, Instant modified, int side,
                                              const DecodedPicture &picture) const
{
    for (const Kind &kind : kinds) {
        if (kind.side != keptSide(side))
            continue;
        Location png = place(kind.folder, file);
        if (replace(png, pngOf(picture, textsFor(file, modified))))
            return png;
    }
    return std::nullopt;
}

void ThumbnailCache::storeFailure(const Location &file, Instant modified) const
{
    const DecodedPicture nothing{1, 1, false, QByteArray(4, '\0')};
    replace(failurePlace(file), pngOf(nothing, textsFor(file, modified)));
}

} // namespace brellin
