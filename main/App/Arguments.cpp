#include "App/Arguments.h"

#include "Base/Location.h"

#include <algorithm>
#include <numeric>

namespace brellin {

namespace {

/// The edit distance between two words: insertions, deletions and replacements.
int distance(const QString &a, const QString &b)
{
    std::vector<int> row(static_cast<std::size_t>(b.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (qsizetype i = 0; i < a.size(); ++i) {
        int diagonal = row[0];
        row[0] = static_cast<int>(i) + 1;
        for (std::size_t j = 1; j < row.size(); ++j) {
            const int replaced = diagonal + (a[i] == b[static_cast<qsizetype>(j) - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row.back();
}

QStringList namesOf(const std::vector<OptionSpec> &options)
{
    QStringList names;
    for (const OptionSpec &option : options)
        names << QStringLiteral("--") + option.name;
    return names;
}

} // namespace

QString asciiWord(const std::string &word)
{
    return QString::fromStdString(word)
        .normalized(QString::NormalizationForm_C)
        .replace(u'ä', QStringLiteral("ae"))
        .replace(u'ö', QStringLiteral("oe"))
        .replace(u'ü', QStringLiteral("ue"))
        .replace(u'ß', QStringLiteral("ss"));
}

std::optional<QString> closestWord(const QString &word, const QStringList &known)
{
    const auto closest = std::ranges::min_element(known, {}, [&](const QString &one) { return distance(word, one); });
    if (closest == known.end() || distance(word, *closest) > 2)
        return std::nullopt;
    return *closest;
}

QString unknownWordMessage(const QString &what, const QString &word, const QStringList &known)
{
    QString message = QStringLiteral("%1 „%2“.").arg(what, word);
    if (const std::optional<QString> meant = closestWord(word, known))
        message += QStringLiteral(" Meintest du „%1“?").arg(*meant);
    return message;
}

Result<Arguments> Arguments::parse(const std::vector<std::string> &words, const std::vector<OptionSpec> &options)
{
    Arguments arguments;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string &word = words[i];
        if (word == "--") {
            arguments.m_rest.insert(arguments.m_rest.end(), words.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                                    words.end());
            break;
        }
        if (!word.starts_with("--")) {
            arguments.m_rest.push_back(word);
            continue;
        }
        const std::size_t equals = word.find('=');
        const QString name = asciiWord(word.substr(2, equals == std::string::npos ? equals : equals - 2));
        const auto known = std::ranges::find(options, name, &OptionSpec::name);
        if (known == options.end())
            return failure(
                unknownWordMessage(QStringLiteral("Unbekannte Option"), QStringLiteral("--") + name, namesOf(options)));
        std::vector<std::string> &values = arguments.m_values[name];
        if (known->valueName.isEmpty() && equals != std::string::npos)
            return failure(QStringLiteral("Die Option „--%1“ hat keinen Wert.").arg(name));
        if (known->valueName.isEmpty())
            continue;
        if (equals == std::string::npos && i + 1 == words.size())
            return failure(QStringLiteral("Zur Option „--%1“ fehlt: %2.").arg(name, known->valueName));
        values.push_back(equals == std::string::npos ? words[++i] : word.substr(equals + 1));
    }
    return arguments;
}

std::vector<std::string> Arguments::values(const QString &option) const
{
    const auto found = m_values.find(option);
    return found == m_values.end() ? std::vector<std::string>() : found->second;
}

} // namespace brellin
