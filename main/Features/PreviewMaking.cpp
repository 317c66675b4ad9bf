#include "Features/PreviewMaking.h"

#include "Base/German.h"
#include "Base/RecentDate.h"
#include "Disk/EntryPlace.h"
#include "Disk/FileTypes.h"
#include "Disk/Walk.h"
#include "Features/FolderCount.h"
#include "Features/PreviewFacts.h"
#include "Features/PreviewText.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <atomic>

namespace brellin {

namespace {

/// The size of the whole picture by its longest side. Decoder output is untrusted: limits the side, and uses the shape of
/// what was decoded.
QSizeF wholeSize(const DecodedPicture &picture, double longest)
{
    constexpr double most = 100'000;
    const QSizeF decoded(picture.width, picture.height);
    const double side = std::max(decoded.width(), decoded.height());
    return longest > 0 ? decoded * (std::min(longest, most) / side) : decoded;
}

double longestOf(const QJsonObject &media, QStringView width, QStringView height)
{
    return std::max(media.value(width).toDouble(), media.value(height).toDouble());
}

/// The second step for one entry.
class Completing {
public:
    Completing(PreviewContent content, const PreviewWish &wish, Decoder &decoder, const JobControl &control)
        : m_content(std::move(content))
        , m_wish(wish)
        , m_decoder(decoder)
        , m_control(control)
    {
    }

    PreviewContent run()
    {
        m_content.state = PreviewContent::State::Ready;
        if (m_content.isLink)
            addTarget();
        else if (m_content.isFolder)
            summariseFolder();
        else if (m_content.isSpecial)
            m_content.body = PreviewNothing{
                QStringLiteral("Sockel, Leitungen und Geräte haben keinen Inhalt, der sich zeigen lässt.")};
        else
            readFile();
        return std::move(m_content);
    }

private:
    void readFile();
    QJsonObject mediaFacts();
    void showPicture(const char *word);
    void showPage();
    void listArchive();
    void showText();
    void summariseFolder();
    void addNewest();
    void addTarget();
    void explain(const Failure &why);

    std::string path() const { return m_wish.entry.native(); }

    PreviewContent m_content;
    const PreviewWish &m_wish;
    Decoder &m_decoder;
    const JobControl &m_control;
};

void Completing::readFile()
{
    const FileType &type = fileTypeOf(lowerExtensionOf(m_wish.entry.filename().native()));
    if (type.conformsTo(TypeTrait::Pdf)) {
        showPage();
    } else if (type.conformsTo(TypeTrait::Image)) {
        showPicture(decoderWords::picture);
    } else if (type.conformsTo(TypeTrait::Movie)) {
        showPicture(decoderWords::video);
    } else if (type.conformsTo(TypeTrait::Audio)) {
        addMediaFacts(m_content, mediaFacts());
    } else if (type.conformsTo(TypeTrait::Archive)) {
        listArchive();
    } else {
        showText();
    }
}

QJsonObject Completing::mediaFacts()
{
    const Result<QByteArray> json =
        m_decoder.ask({decoderWords::facts, {path(), std::to_string(m_wish.page)}}, &m_control);
    return json ? QJsonDocument::fromJson(*json).object() : QJsonObject();
}

void Completing::explain(const Failure &why)
{
    m_content.body = PreviewNothing{why.message};
}

void Completing::showPicture(const char *word)
{
    const QJsonObject media = mediaFacts();
    addMediaFacts(m_content, media);
    if (m_control.cancelled())
        return;
    Result<DecodedPicture> picture = m_decoder.askForPicture({word, {path(), std::to_string(m_wish.side)}}, &m_control);
    if (picture)
        m_content.body = PreviewPicture{*picture, wholeSize(*picture, longestOf(media, u"width", u"height"))};
    else
        explain(picture.error());
}

void Completing::showPage()
{
    const QJsonObject media = mediaFacts();
    addMediaFacts(m_content, media);
    if (m_control.cancelled())
        return;
    const int pages = std::max(media.value(u"pages").toInt(), 1);
    const int page = std::clamp(m_wish.page, 0, pages - 1);
    Result<DecodedPicture> picture = m_decoder.askForPicture(
        {decoderWords::pdfPage, {path(), std::to_string(page), std::to_string(m_wish.side)}}, &m_control);
    constexpr double pixelsPerPoint = 96.0 / 72;
    const double longest = longestOf(media, u"pageWidth", u"pageHeight") * pixelsPerPoint;
    if (picture)
        m_content.body = PreviewPage{*picture, page, pages, wholeSize(*picture, longest)};
    else
        explain(picture.error());
}

void Completing::listArchive()
{
    const Result<QByteArray> json = m_decoder.ask({decoderWords::archive, {path()}}, &m_control);
    if (!json) {
        explain(json.error());
        return;
    }
    const QJsonObject listing = QJsonDocument::fromJson(*json).object();
    PreviewArchive archive;
    const QJsonArray entries = listing.value(u"entries").toArray();
    for (const QJsonValueConstRef value : entries) {
        PreviewArchiveEntry entry{value[u"name"].toString(), {}, value[u"folder"].toBool()};
        // Decoder output is untrusted: 1e300 is not a size.
        if (const qint64 size = value[u"size"].toInteger(-1); size >= 0)
            entry.size = size;
        archive.entries.push_back(std::move(entry));
    }
    if (listing.value(u"more").toBool())
        archive.remark = QStringLiteral("Es werden nur die ersten %1 Einträge gezeigt.")
                             .arg(german().toString(static_cast<qlonglong>(archive.entries.size())));
    else if (listing.value(u"damaged").toBool())
        archive.remark = QStringLiteral("Das Archiv ist beschädigt und bricht hier ab.");
    m_content.summary += u" · "_qs + counted(static_cast<qint64>(archive.entries.size()), QStringLiteral("Eintrag"),
                                             QStringLiteral("Einträge"));
    m_content.body = std::move(archive);
}

void Completing::showText()
{
    const Result<EntryPlace> place = openPlace(m_wish.entry);
    const Result<Descriptor> open = place ? openForReading(place->at()) : failure(place.error());
    if (!open) {
        explain(open.error());
        return;
    }
    const QByteArray beginning = QByteArray::fromStdString(readBeginning(*open, previewTextBytes + 1));
    const bool cutOff = beginning.size() > previewTextBytes;
    if (std::optional<PreviewText> text = previewText(beginning.left(previewTextBytes), cutOff))
        m_content.body = *std::move(text);
    else
        m_content.body = PreviewNothing{QStringLiteral("Der Inhalt ist kein Text.")};
}

void Completing::summariseFolder()
{
    if (!m_wish.countsFolders)
        return;
    const Result<FolderCount> count = countFolder(m_wish.entry, &m_control);
    if (!count) {
        explain(count.error());
        return;
    }
    const std::int64_t folders = std::max<std::int64_t>(count->entries - count->files, 0);
    const QString content = counted(count->files, QStringLiteral("Datei"), QStringLiteral("Dateien")) + u", "_qs +
                            counted(folders, QStringLiteral("Ordner"), QStringLiteral("Ordner"));
    m_content.summary += u" · "_qs + sizeText(count->bytes);
    m_content.facts.insert(m_content.facts.begin(), {QStringLiteral("Inhalt"), content, {}});
    addNewest();
}

/// The latest modification in the folder, which the folder's own time does not show.
void Completing::addNewest()
{
    std::atomic<std::int64_t> newest = std::numeric_limits<std::int64_t>::min();
    WalkOptions options;
    options.attributes = Attribute::Modified;
    options.otherVolumes = false;
    const auto look = [&](const WalkEntry &entry, int) {
        const std::int64_t time = entry.attributes.modified.time_since_epoch().count();
        std::int64_t known = newest.load(std::memory_order_relaxed);
        while (!entry.unreadable && time > known && !newest.compare_exchange_weak(known, time))
            ;
        return WalkStep::Continue;
    };
    const Result<WalkOutcome> walked = walkParallel(m_wish.entry, options, look, &m_control);
    if (!walked || newest == std::numeric_limits<std::int64_t>::min())
        return;
    const Instant when{Instant::duration(newest)};
    m_content.facts.insert(m_content.facts.begin() + 1,
                           {QStringLiteral("Neuestes"), recentDate(when, m_wish.now), longDateTime(when)});
}

void Completing::addTarget()
{
    std::error_code error;
    const Location target = std::filesystem::read_symlink(m_wish.entry, error);
    if (!error)
        m_content.facts.insert(m_content.facts.begin(), {QStringLiteral("Ziel"), shownName(target), shown(target)});
}

} // namespace

PreviewContent beginPreview(const PreviewWish &wish)
{
    const Result<FileAttributes> attributes = readAttributes(wish.entry);
    if (attributes)
        return previewBasics(wish.entry, *attributes, wish.now);
    PreviewContent content;
    content.state = PreviewContent::State::Failed;
    content.entry = wish.entry;
    content.name = shownName(wish.entry);
    content.failure = attributes.error().message;
    return content;
}

PreviewContent completePreview(PreviewContent content, const PreviewWish &wish, Decoder &decoder,
                               const JobControl &control)
{
    return Completing(std::move(content), wish, decoder, control).run();
}

} // namespace brellin
