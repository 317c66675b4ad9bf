#pragma once

#include "Base/Result.h"

#include <QString>
#include <QStringList>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace brellin {

/// One option that a command knows.
struct OptionSpec {
    QString name;      ///< "ausfuehren", written "--ausfuehren"
    QString valueName; ///< "MUSTER" where a value follows ("--ohne MUSTER" or "--ohne=MUSTER"); empty for a switch
    QString help;
};

/// The words behind a command, sorted into options and the rest. Words are bytes: a file name need not be UTF-8.
class Arguments {
public:
    /// Umlauts may be written out ("--ausführen"); "--" ends the options. An unknown option, or one without its value, is a
    /// failure that says so.
    static Result<Arguments> parse(const std::vector<std::string> &words, const std::vector<OptionSpec> &options);

    bool has(const QString &option) const { return m_values.contains(option); }
    std::vector<std::string> values(const QString &option) const;
    const std::vector<std::string> &rest() const { return m_rest; }

private:
    std::map<QString, std::vector<std::string>> m_values;
    std::vector<std::string> m_rest;
};

/// A word with umlauts written out ("prüfen" → "pruefen"), as commands and options are named.
QString asciiWord(const std::string &word);

/// The known word that somebody who wrote `word` most likely meant: at most two letters away.
std::optional<QString> closestWord(const QString &word, const QStringList &known);

/// „Unbekannter Befehl „prufen“. Meintest du „pruefen“?“
QString unknownWordMessage(const QString &what, const QString &word, const QStringList &known);

} // namespace brellin
