#pragma once

#include "Base/Json.h"
#include "System/UserDefaults.h"

#include <functional>
#include <vector>

namespace brellin {

/// The list stored under a key; nothing where it is absent or does not decode.
template <class Record>
std::optional<std::vector<Record>> storedList(const UserDefaults &defaults, const QString &key)
{
    const std::optional<QByteArray> text = defaults.json(key);
    if (!text)
        return std::nullopt;
    JsonResult<std::vector<Record>> list = fromJsonText<std::vector<Record>>(*text);
    return list ? std::optional(*std::move(list)) : std::nullopt;
}

/// Changes the list stored under a key, read freshly (nothing: absent or undecodable); text that did not decode is kept
/// aside. `change` answers with the new list, or with nothing to leave it as it is.
template <class Record>
Result<void>
updateList(UserDefaults &defaults, const QString &key,
           const std::function<std::optional<std::vector<Record>>(std::optional<std::vector<Record>>)> &change)
{
    return defaults.update(key, [&](const std::optional<QByteArray> &old) -> std::optional<UserDefaults::Change> {
        std::optional<std::vector<Record>> list;
        if (old) {
            if (JsonResult<std::vector<Record>> read = fromJsonText<std::vector<Record>>(*old))
                list = *std::move(read);
        }
        const bool damaged = old && !list;
        const std::optional<std::vector<Record>> changed = change(std::move(list));
        if (!changed)
            return std::nullopt;
        return UserDefaults::Change{jsonText(toJson(*changed)), damaged};
    });
}

/// Stores a whole list in place of the old one.
template <class Record>
Result<void> storeList(UserDefaults &defaults, const QString &key, const std::vector<Record> &list)
{
    return updateList<Record>(defaults, key, [&](const auto &) { return std::optional(list); });
}

} // namespace brellin
