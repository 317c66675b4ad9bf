#include "FileOperations/BatchRenamePlan.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace brellin {

namespace {

using Mode = BatchRenameFields::Mode;
using Conflict = BatchRenameRow::Conflict;

constexpr std::size_t longestName = 255;

std::string bytesOf(const QString &text)
{
    return text.toStdString();
}

std::string withExtension(std::string stem, std::string_view extension)
{
    return extension.empty() ? stem : stem.append(".").append(extension);
}

std::string numberText(int number, int digits)
{
    const std::string plain = std::to_string(std::abs(static_cast<long long>(number)));
    const std::size_t width = static_cast<std::size_t>(std::clamp(digits, 1, 32));
    const std::string filled = std::string(width - std::min(width, plain.size()), '0') + plain;
    return number < 0 ? "-" + filled : filled;
}

/// Whether the text starts with a combining accent (U+0300 to U+036F), which belongs to the letter before.
bool beginsWithAccent(std::string_view text)
{
    if (text.size() < 2)
        return false;
    const auto first = static_cast<unsigned char>(text[0]);
    const auto second = static_cast<unsigned char>(text[1]);
    return first == 0xCCU || (first == 0xCDU && second <= 0xAFU);
}

/// Replaces on bytes, so that invalid UTF-8 survives; finds text in composed and decomposed form.
std::string replaced(std::string_view name, const QString &find, const std::string &by)
{
    const std::array forms{bytesOf(find.normalized(QString::NormalizationForm_D)),
                           bytesOf(find.normalized(QString::NormalizationForm_C)), bytesOf(find)};
    std::string result;
    while (!name.empty()) {
        const auto form = std::ranges::find_if(forms, [&](const std::string &one) {
            return !one.empty() && name.starts_with(one) && !beginsWithAccent(name.substr(one.size()));
        });
        if (form != forms.end()) {
            result += by;
            name.remove_prefix(form->size());
        } else {
            result += name.front();
            name.remove_prefix(1);
        }
    }
    return result;
}

bool isValid(std::string_view name)
{
    using namespace std::string_view_literals;
    return !name.empty() && name != "." && name != ".." && name.find_first_of("/:\0"sv) == std::string_view::npos;
}

/// Names with equal keys are the same name on the volume.
std::string keyOf(std::string_view name, FolderNames::Case letterCase)
{
    return letterCase == FolderNames::Case::Ignored ? bytesOf(folded(shown(name))) : std::string(name);
}

/// Names of one folder, as keys for the checks.
struct FolderKeys {
    FolderNames::Case letterCase = FolderNames::Case::Distinguished;
    std::set<std::string> others;      ///< names of entries outside the batch
    std::map<std::string, int> wanted; ///< number of entries that get this name
};

std::map<Location, FolderKeys> folderKeys(const std::vector<BatchRenameRow> &rows, const NamesInFolders &folders)
{
    std::map<Location, FolderKeys> keys;
    std::map<Location, std::set<std::string>> renamed;
    for (const BatchRenameRow &row : rows)
        renamed[row.from.parent_path()].insert(row.from.filename().native());
    for (const auto &[folder, own] : renamed) {
        FolderKeys &one = keys[folder];
        const auto known = folders.find(folder);
        if (known == folders.end())
            continue;
        one.letterCase = known->second.letterCase;
        for (const std::string &name : known->second.names) {
            if (!own.contains(name))
                one.others.insert(keyOf(name, one.letterCase));
        }
    }
    for (const BatchRenameRow &row : rows) {
        FolderKeys &one = keys[row.from.parent_path()];
        ++one.wanted[keyOf(row.name, one.letterCase)];
    }
    return keys;
}

Conflict conflictOf(const BatchRenameRow &row, const FolderKeys &keys)
{
    const std::string key = keyOf(row.name, keys.letterCase);
    if (!isValid(row.name))
        return Conflict::InvalidName;
    if (row.name.size() > longestName)
        return Conflict::TooLong;
    if (keys.wanted.at(key) > 1)
        return Conflict::Equal;
    return keys.others.contains(key) ? Conflict::Taken : Conflict::None;
}

QString errorText(const BatchRenameRow &row)
{
    switch (row.conflict) {
    case Conflict::InvalidName:
        return QStringLiteral("Namen dürfen nicht leer sein und keine „/“ oder „:“ enthalten.");
    case Conflict::TooLong:
        return QStringLiteral("„%1“ ist als Name zu lang.").arg(shown(std::string_view(row.name)));
    case Conflict::Equal:
        return QStringLiteral("Mehrere Dateien würden gleich heißen.");
    case Conflict::Taken:
        return QStringLiteral("„%1“ gibt es in diesem Ordner schon.").arg(shown(std::string_view(row.name)));
    case Conflict::Twice:
        return QStringLiteral("„%1“ ist zweimal ausgewählt.").arg(shownName(row.from));
    case Conflict::Inside:
        return QStringLiteral("„%1“ liegt in einem Ordner, der auch umbenannt werden soll.").arg(shownName(row.from));
    case Conflict::None:
        break;
    }
    return {};
}

/// Marks conflicts that do not depend on the new names.
void markSelection(std::vector<BatchRenameRow> &rows)
{
    std::set<Location> all;
    for (const BatchRenameRow &row : rows)
        all.insert(standardised(row.from));
    const auto holds = [&all](const Location &entry) {
        Location folder = entry.parent_path();
        while (folder.has_relative_path() && !all.contains(folder))
            folder = folder.parent_path();
        return folder.has_relative_path();
    };
    std::set<Location> seen;
    for (BatchRenameRow &row : rows) {
        if (!seen.insert(standardised(row.from)).second)
            row.conflict = Conflict::Twice;
        else if (holds(standardised(row.from)))
            row.conflict = Conflict::Inside;
    }
}

/// Text of the most important conflict; each kind is checked over all rows.
std::optional<QString> firstError(const std::vector<BatchRenameRow> &rows)
{
    for (const Conflict conflict : {Conflict::Twice, Conflict::Inside, Conflict::InvalidName, Conflict::TooLong,
                                    Conflict::Equal, Conflict::Taken}) {
        const auto row = std::ranges::find(rows, conflict, &BatchRenameRow::conflict);
        if (row != rows.end())
            return errorText(*row);
    }
    return std::nullopt;
}

} // namespace

QString title(BatchRenameFields::Mode mode)
{
    switch (mode) {
    case Mode::Number:
        return QStringLiteral("Name + Nummer");
    case Mode::Replace:
        return QStringLiteral("Ersetzen");
    case Mode::Add:
        return QStringLiteral("Ergänzen");
    case Mode::Date:
        break;
    }
    return QStringLiteral("Datum davor");
}

std::string newName(const BatchRenameEntry &entry, int index, const BatchRenameFields &fields)
{
    const std::string name = entry.location.filename().native();
    switch (fields.mode) {
    case Mode::Number: {
        const std::string number = numberText(fields.startNumber + index, fields.digits);
        const std::string stem =
            fields.base.isEmpty() ? number : bytesOf(fields.base) + bytesOf(fields.separator) + number;
        return withExtension(stem, extensionOf(name));
    }
    case Mode::Replace:
        return fields.find.isEmpty() ? name : replaced(name, fields.find, bytesOf(fields.replaceWith));
    case Mode::Add:
        return withExtension(bytesOf(fields.prefix).append(stemOf(name)).append(bytesOf(fields.suffix)),
                             extensionOf(name));
    case Mode::Date:
        break;
    }
    return bytesOf(entry.date.toString(QStringLiteral("yyyy-MM-dd"))) + ' ' + name;
}

BatchRenamePlan planBatchRename(const std::vector<BatchRenameEntry> &entries, const BatchRenameFields &fields,
                                const NamesInFolders &folders)
{
    BatchRenamePlan plan;
    plan.rows.reserve(entries.size());
    for (const BatchRenameEntry &entry : entries) {
        const std::string name = newName(entry, static_cast<int>(plan.rows.size()), fields);
        plan.rows.push_back({entry.location, entry.location.parent_path() / name, name});
    }
    const std::map<Location, FolderKeys> keys = folderKeys(plan.rows, folders);
    for (BatchRenameRow &row : plan.rows)
        row.conflict = conflictOf(row, keys.at(row.from.parent_path()));
    markSelection(plan.rows);
    plan.error = firstError(plan.rows);
    return plan;
}

} // namespace brellin
