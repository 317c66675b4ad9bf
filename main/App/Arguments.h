#pragma once

#include "Base/Result.h"

#include <QString>
#include <QStringList>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace brellin {

/// An option that a command accepts.
struct OptionSpec {
    QString name; ///< "ausfuehren", written "--ausfuehren"
    /// "MUSTER" if the option takes a value ("--ohne MUSTER" or "--ohne=MUSTER"); empty for a switch.
    QString valueName;
    QString help;
};

/// The arguments of a command, split into options and other words. Words are bytes: file names need not be UTF-8.
class Arguments {
public:
    /// Accepts umlauts in options ("--ausführen"); "--" ends the options. An unknown option or a missing value fails
    /// with a message.
    static Result<Arguments> parse(const std::vector<std::string> &words, const std::vector<OptionSpec> &options);

    bool has(const QString &option) const { return m_values.contains(option); }
    std::vector<std::string> values(const QString &option) const;
    const std::vector<std::string> &rest() const { return m_rest; }

private:
    std::map<QString, std::vector<std::string>> m_values;
    std::vector<std::string> m_rest;
};

/// A word with umlauts transliterated ("prüfen" → "pruefen"), as in the names of commands and options.
QString asciiWord(const std::string &word);

/// The known word most similar to `word`, if it differs by two letters at most.
std::optional<QString> closestWord(const QString &word, const QStringList &known);

/// „Unbekannter Befehl „prufen“. Meintest du „pruefen“?“
QString unknownWordMessage(const QString &what, const QString &word, const QStringList &known);

} // namespace brellin
