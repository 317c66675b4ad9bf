#include "Disk/FileTypes.h"

#include "Disk/FileTypeTables.h"

#include <QMimeDatabase>
#include <QMimeType>

#include <algorithm>
#include <array>
#include <memory>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <string>
#include <unordered_map>

namespace brellin {

namespace {

using enum TypeTrait;

/// Longer than any known extension.
constexpr std::size_t longestExtension = 32;
/// Limits the cache, since names may have any number of extensions ("Bericht.1037").
constexpr std::size_t mostRemembered = 20'000;

struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
};
template <class T>
using TextMap = std::unordered_map<std::string, T, TextHash, std::equal_to<>>;

/// An extension in ASCII lower case, without allocation.
class LowerCase {
public:
    explicit LowerCase(std::string_view extension)
    {
        if (extension.size() > m_letters.size())
            return;
        const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
        std::ranges::transform(extension, m_letters.begin(), lower);
        m_length = extension.size();
    }
    /// Empty if it cannot be an extension.
    std::string_view text() const { return {m_letters.data(), m_length}; }

private:
    std::array<char, longestExtension> m_letters;
    std::size_t m_length = 0;
};

const CorrectedType *correctionOf(std::string_view extension)
{
    const auto table = correctedTypes();
    const auto found = std::ranges::lower_bound(table, extension, {}, &CorrectedType::extension);
    return found != table.end() && found->extension == extension ? &*found : nullptr;
}

QMimeType mimeTypeOf(std::string_view extension)
{
    const QString name =
        QStringLiteral("x.") + QString::fromUtf8(extension.data(), static_cast<qsizetype>(extension.size()));
    return QMimeDatabase().mimeTypeForFile(name, QMimeDatabase::MatchExtension);
}

/// Traits of a type and its ancestors.
std::uint32_t traitsOf(const QMimeType &type)
{
    std::uint32_t traits = namedTraits(type.name().toStdString());
    if ((traits & bits(Application)) != 0)
        return traits;
    const auto inherit = [&](TypeTrait trait, const QString &parent) {
        if (type.inherits(parent))
            traits |= bits(trait);
    };
    inherit(Text, QStringLiteral("text/plain"));
    inherit(Xml, QStringLiteral("application/xml"));
    inherit(Json, QStringLiteral("application/json"));
    inherit(SourceCode, QStringLiteral("text/x-csrc"));
    // In the database JSON inherits from JavaScript, but it is no script.
    const bool runs = type.inherits(QStringLiteral("application/x-executable"));
    if (runs && (traits & bits(Text)) != 0 && (traits & bits(Json)) == 0)
        traits |= Script | SourceCode;
    return traits;
}

enum class Category : std::uint8_t { Pictures, Movies, Music, Archives, Documents, Programs, Others };

bool isOneOf(std::string_view extension, std::initializer_list<std::string_view> list)
{
    return std::ranges::find(list, extension) != list.end();
}

/// The first matching rule decides.
Category categoryOf(const FileType &type, std::string_view extension)
{
    if (!type.known)
        return Category::Others;
    if (type.conformsTo(Image))
        return Category::Pictures;
    if (type.conformsTo(Movie))
        return Category::Movies;
    if (type.conformsTo(Audio))
        return Category::Music;
    if (type.conformsTo(Archive) || isOneOf(extension, {"zip", "rar", "7z", "dmg", "gz", "tar"}))
        return Category::Archives;
    if (type.conformsTo(Pdf) || type.conformsTo(Presentation) || type.conformsTo(Spreadsheet) ||
        type.conformsTo(Text) || isOneOf(extension, {"doc", "docx", "pages", "numbers", "key", "xlsx", "pptx", "odt"}))
        return Category::Documents;
    if (type.conformsTo(Application) || isOneOf(extension, {"pkg", "app"}))
        return Category::Programs;
    return Category::Others;
}

struct Answer {
    const FileType *type;
    Category category;
};

/// Cache of all lookups. Types are few; extensions are limited in number.
class TypeTable {
public:
    Answer answer(std::string_view extension)
    {
        {
            const std::shared_lock lock(m_mutex);
            if (const auto found = m_answers.find(extension); found != m_answers.end())
                return found->second;
        }
        const QMimeType mime = mimeTypeOf(extension);
        const std::scoped_lock lock(m_mutex);
        const FileType *type = typeFor(extension, mime);
        const Answer answer{type, categoryOf(*type, extension)};
        if (m_answers.size() < mostRemembered)
            m_answers.emplace(extension, answer);
        return answer;
    }

    QString description(std::string_view extension)
    {
        {
            const std::shared_lock lock(m_mutex);
            if (const auto found = m_descriptions.find(extension); found != m_descriptions.end())
                return found->second;
        }
        const CorrectedType *correction = correctionOf(extension);
        const QMimeType mime = mimeTypeOf(extension);
        QString text;
        if (correction != nullptr)
            text = QString::fromUtf16(correction->description);
        else if (!mime.isDefault())
            text = mime.comment();
        const std::scoped_lock lock(m_mutex);
        if (m_descriptions.size() < mostRemembered)
            m_descriptions.emplace(extension, text);
        return text;
    }

private:
    const FileType *typeFor(std::string_view extension, const QMimeType &mime)
    {
        if (const CorrectedType *correction = correctionOf(extension)) {
            const QString name =
                QString::fromLatin1(correction->mimeName.data(), static_cast<qsizetype>(correction->mimeName.size()));
            return keep("." + std::string(extension), FileType{true, correction->traits, name});
        }
        if (!mime.isValid() || mime.isDefault())
            return &m_unknown;
        return keep(mime.name().toStdString(), FileType{true, traitsOf(mime), mime.name()});
    }

    const FileType *keep(const std::string &key, FileType type)
    {
        auto &kept = m_types[key];
        if (!kept)
            kept = std::make_unique<const FileType>(std::move(type));
        return kept.get();
    }

    std::shared_mutex m_mutex;
    const FileType m_unknown;
    TextMap<std::unique_ptr<const FileType>> m_types; ///< keyed by MIME name; corrections by "." and extension
    TextMap<Answer> m_answers;
    TextMap<QString> m_descriptions;
};

TypeTable &table()
{
    static TypeTable types;
    return types;
}

} // namespace

const FileType &fileTypeOf(std::string_view extension)
{
    return *table().answer(LowerCase(extension).text()).type;
}

namespace {

/// Common names for frequent types, where the database is more technical.
constexpr std::array<std::pair<std::string_view, const char16_t *>, 14> everydayNames{{
    {"csv", u"CSV-Tabelle"},
    {"dmg", u"Festplatten-Image"},
    {"doc", u"Word-Dokument"},
    {"docx", u"Word-Dokument"},
    {"heic", u"HEIC-Bild"},
    {"md", u"Markdown-Dokument"},
    {"mp4", u"MPEG-4-Film"},
    {"odt", u"Textdokument (ODT)"},
    {"ppt", u"PowerPoint-Präsentation"},
    {"pptx", u"PowerPoint-Präsentation"},
    {"txt", u"Textdokument"},
    {"xls", u"Excel-Tabelle"},
    {"xlsx", u"Excel-Tabelle"},
    {"zip", u"ZIP-Archiv"},
}};

} // namespace

QString typeDescription(std::string_view extension)
{
    const LowerCase lower(extension);
    for (const auto &[name, everyday] : everydayNames)
        if (lower.text() == name)
            return QString::fromUtf16(everyday);
    return table().description(lower.text());
}

const QString &fileCategory(std::string_view extension)
{
    static const std::array<const QString, 7> words = {
        QStringLiteral("Bilder"),    QStringLiteral("Videos"),    QStringLiteral("Musik"),   QStringLiteral("Archive"),
        QStringLiteral("Dokumente"), QStringLiteral("Programme"), QStringLiteral("Sonstige")};
    const Category category = table().answer(LowerCase(extension).text()).category;
    return words[static_cast<std::size_t>(category)];
}

} // namespace brellin
