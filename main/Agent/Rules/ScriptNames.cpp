#include "Agent/Rules/ScriptNames.h"

#include "Base/Location.h"
#include "Disk/EntryPlace.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <algorithm>
#include <cstdint>

namespace brellin {

namespace {

constexpr std::size_t leastCharacters = 3;
constexpr std::size_t runLength = 6;
constexpr unsigned runBits = 24;
constexpr std::size_t mostBytesRead = std::size_t(64) << 20U;

std::size_t runNumber(std::string_view text, std::size_t at)
{
    std::uint64_t run = 0;
    for (std::size_t i = 0; i < runLength; ++i)
        run = run << 8U | static_cast<unsigned char>(text[at + i]);
    return (run * 0x9E3779B97F4A7C15U) >> (64U - runBits);
}

bool isAscii(std::string_view text)
{
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string composedBytes(const QString &text)
{
    return text.normalized(QString::NormalizationForm_C).toStdString();
}

/// The text in NFC. Old scripts may be Latin-1.
std::string composedText(std::string_view bytes)
{
    const QByteArrayView view(bytes.data(), static_cast<qsizetype>(bytes.size()));
    return composedBytes(view.isValidUtf8() ? QString::fromUtf8(view) : QString::fromLatin1(view));
}

/// Whether a byte can continue a name; covers all bytes of non-ASCII letters.
bool isOfName(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    const bool letter = (byte | 0x20U) >= 'a' && (byte | 0x20U) <= 'z';
    return letter || (byte >= '0' && byte <= '9') || byte >= 0x80 || byte == '_' || byte == '-';
}

/// Whether a match at this position is a whole name. A following dot belongs to a longer name only if the name goes on
/// behind it; otherwise it ends a sentence.
bool standsAlone(std::string_view text, std::size_t at, std::size_t length)
{
    if (at > 0 && (isOfName(text[at - 1]) || text[at - 1] == '.'))
        return false;
    const std::string_view rest = text.substr(at + length);
    return rest.empty() || !(isOfName(rest[0]) || (rest[0] == '.' && rest.size() > 1 && isOfName(rest[1])));
}

std::string contentOf(const Location &script)
{
    const Result<EntryPlace> place = openPlace(script);
    if (!place)
        return {};
    const Result<Descriptor> open = openForReading(place->at());
    return open ? readBeginning(*open, mostBytesRead) : std::string();
}

} // namespace

bool isReadScriptExtension(std::string_view extension)
{
    return extension == "py" || extension == "command" || extension == "sh";
}

ScriptNames::ScriptNames(const std::vector<Location> &scripts) : m_runs(std::size_t(1) << runBits)
{
    for (std::size_t i = 0; i < scripts.size(); ++i) {
        const Location &script = scripts[i];
        m_names.push_back(script.filename().native());
        std::string text = contentOf(script);
        if (text.find('\\') != std::string::npos) {
            std::string unescaped = text;
            std::erase(unescaped, '\\');
            add(i, std::move(unescaped));
        }
        if (!isAscii(text))
            add(i, composedText(text));
        add(i, std::move(text));
    }
}

void ScriptNames::add(std::size_t script, std::string text)
{
    for (std::size_t at = 0; at + runLength <= text.size(); ++at)
        m_runs[runNumber(text, at)] = true;
    m_texts.push_back({script, std::move(text)});
}

bool ScriptNames::mention(std::string_view name) const
{
    if (m_texts.empty())
        return false;
    if (isAscii(name))
        return name.size() >= leastCharacters && contain(name);
    const QString text = shown(name).normalized(QString::NormalizationForm_C);
    if (text.toUcs4().size() < static_cast<qsizetype>(leastCharacters))
        return false;
    return contain(name) || contain(text.toStdString());
}

bool ScriptNames::mayContain(std::string_view name) const
{
    for (std::size_t at = 0; at + runLength <= name.size(); ++at) {
        if (!m_runs[runNumber(name, at)])
            return false;
    }
    return true;
}

bool ScriptNames::contain(std::string_view name) const
{
    return mayContain(name) &&
           std::ranges::any_of(m_texts, [&](const Text &one) { return one.text.find(name) != std::string::npos; });
}

std::optional<std::size_t> ScriptNames::firstOtherMentioningWhole(std::string_view name) const
{
    if (!mention(name))
        return std::nullopt;
    const std::string other = composedBytes(shown(name));
    const auto found = std::ranges::find_if(m_texts, [&](const Text &one) {
        return m_names[one.script] != name && (containsWhole(one, name) || containsWhole(one, other));
    });
    return found != m_texts.end() ? std::optional(found->script) : std::nullopt;
}

bool ScriptNames::containsWhole(const Text &text, std::string_view name)
{
    for (std::size_t at = text.text.find(name); at != std::string::npos; at = text.text.find(name, at + 1)) {
        if (standsAlone(text.text, at, name.size()))
            return true;
    }
    return false;
}

} // namespace brellin
