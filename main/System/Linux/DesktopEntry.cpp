#include "System/Linux/DesktopEntry.h"

#include <QFile>
#include <QUrl>

#include <algorithm>

namespace brellin {

namespace {

constexpr qint64 mostFileBytes = 1 << 20;

/// A value with its escape sequences resolved.
QString textIn(const QByteArray &value)
{
    QByteArray text;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            text += value[i];
            continue;
        }
        const char mark = value[++i];
        text += mark == 's' ? ' ' : mark == 'n' ? '\n' : mark == 't' ? '\t' : mark == 'r' ? '\r' : mark;
    }
    return QString::fromUtf8(text);
}

/// Splits a command at blanks. Double quotes group words; inside them a backslash escapes the next character.
std::optional<std::vector<QString>> wordsOf(const QString &command)
{
    std::vector<QString> words;
    QString word;
    bool quoted = false;
    bool begun = false;
    for (qsizetype i = 0; i < command.size(); ++i) {
        const QChar sign = command[i];
        if (sign == u'"') {
            quoted = !quoted;
            begun = true;
        } else if (quoted && sign == u'\\' && i + 1 < command.size()) {
            word += command[++i];
        } else if (!quoted && sign == u' ') {
            if (begun)
                words.push_back(std::exchange(word, {}));
            begun = false;
        } else {
            word += sign;
            begun = true;
        }
    }
    if (begun)
        words.push_back(word);
    return quoted ? std::nullopt : std::optional(std::move(words));
}

std::string urlWord(const Location &entry)
{
    const std::string &bytes = entry.native();
    return "file://" +
           QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())).toPercentEncoding("/").toStdString();
}

/// Expands "%%" and the codes that may be part of a word, in a word that is not itself a field code for files.
std::string plainWord(QString word, const DesktopEntry &entry)
{
    word.replace(QStringLiteral("%c"), entry.name);
    word.replace(QStringLiteral("%k"), shown(entry.file));
    word.replace(QStringLiteral("%%"), QStringLiteral("%"));
    return word.toStdString();
}

bool isCode(const QString &word, const char16_t *codes)
{
    return word.size() == 2 && word[0] == u'%' && QStringView(codes).contains(word[1]);
}

} // namespace

KeyFile readKeyFile(const Location &file)
{
    KeyFile groups;
    QFile source(QFile::decodeName(file.c_str()));
    if (!source.open(QIODevice::ReadOnly))
        return groups;
    std::map<QByteArray, QByteArray> *group = nullptr;
    for (const QByteArray &piece : source.read(mostFileBytes).split('\n')) {
        const QByteArray line = piece.trimmed();
        if (line.startsWith('[') && line.endsWith(']'))
            group = &groups[line.sliced(1, line.size() - 2)];
        const qsizetype sign = line.indexOf('=');
        if (group != nullptr && sign > 0 && !line.startsWith('#') && !line.startsWith('['))
            group->try_emplace(line.first(sign).trimmed(), line.sliced(sign + 1).trimmed());
    }
    return groups;
}

std::vector<QString> keyFileList(const QByteArray &value)
{
    std::vector<QString> parts;
    for (const QByteArray &part : value.split(';')) {
        if (!part.trimmed().isEmpty())
            parts.push_back(QString::fromUtf8(part.trimmed()));
    }
    return parts;
}

std::optional<DesktopEntry> DesktopEntry::read(const Location &file, const QString &identifier)
{
    KeyFile groups = readKeyFile(file);
    std::map<QByteArray, QByteArray> &keys = groups["Desktop Entry"];
    DesktopEntry entry;
    entry.hidden = keys["Hidden"] == "true";
    if (keys["Type"] != "Application" && !entry.hidden)
        return std::nullopt;
    entry.file = file;
    entry.identifier = identifier;
    entry.name = textIn(keys.contains("Name[de]") ? keys["Name[de]"] : keys["Name"]);
    entry.icon = textIn(keys["Icon"]);
    entry.command = textIn(keys["Exec"]);
    entry.tryProgram = textIn(keys["TryExec"]).toStdString();
    entry.types = keyFileList(keys["MimeType"]);
    entry.offered = keys["NoDisplay"] != "true";
    entry.inTerminal = keys["Terminal"] == "true";
    return entry;
}

bool DesktopEntry::takesFiles() const
{
    const std::optional<std::vector<QString>> words = wordsOf(command);
    return words && std::ranges::any_of(*words, [](const QString &word) { return isCode(word, u"fFuU"); });
}

std::vector<std::vector<std::string>> DesktopEntry::commandLines(const std::vector<Location> &entries) const
{
    const std::optional<std::vector<QString>> words = wordsOf(command);
    if (!words || words->empty())
        return {};
    const bool takesOne = std::ranges::any_of(*words, [](const QString &word) { return isCode(word, u"fu"); });
    const auto line = [&](const std::vector<Location> &opened) {
        std::vector<std::string> made;
        for (const QString &word : *words) {
            if (isCode(word, u"fFuU")) {
                const bool asUrl = word[1] == u'u' || word[1] == u'U';
                for (const Location &one : opened)
                    made.push_back(asUrl ? urlWord(one) : one.native());
            } else if (word == QStringLiteral("%i")) {
                if (!icon.isEmpty())
                    made.insert(made.end(), {"--icon", icon.toStdString()});
            } else if (!isCode(word, u"dDnNvm")) { // deprecated codes, dropped
                made.push_back(plainWord(word, *this));
            }
        }
        return made;
    };
    if (!takesOne || entries.size() < 2)
        return {line(entries)};
    std::vector<std::vector<std::string>> lines;
    lines.reserve(entries.size());
    for (const Location &one : entries)
        lines.push_back(line({one}));
    return lines;
}

} // namespace brellin
