#pragma once

#include "Base/Location.h"
#include "Base/Published.h"
#include "Features/EntryMove.h"
#include "System/UserDefaults.h"

#include <QPointer>
#include <QString>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace brellin {

struct StoredKind;

/// The folder colours chosen by the user: the setting "folderColors" (path → palette tag).
class FolderColors : public Model<FolderColors> {
public:
    static StoredKind kind();
    /// The settings must outlive this object.
    explicit FolderColors(UserDefaults &defaults);

    /// The palette tag of a folder; nullopt if it has no colour.
    std::optional<QString> color(const Location &folder) const;
    /// Sets or removes a folder's colour. Ignores names outside the palette.
    void setColor(const Location &folder, std::optional<QString> tagName);
    /// Call after entries were renamed, moved or trashed: their colours and those of the folders below go along. What
    /// arrives has no colour of what was there before. The moves count as simultaneous, since names may be swapped.
    void moved(const std::vector<EntryMove> &moves);
    void moved(const Location &from, const Location &to) { moved({{from, to}}); }
    /// Re-reads the setting; another process may have changed it.
    void reload();
    /// Calls `heard` with each folder whose colour has changed, until `receiver` is destroyed.
    void observe(QObject *receiver, std::function<void(const Location &)> heard);

private:
    using Colors = std::map<std::string, QString>; ///< keyed by the path's bytes
    struct Observer {
        QPointer<QObject> receiver;
        std::function<void(const Location &)> heard;
    };

    struct Decoded {
        Colors colors;
        bool isObject = true; ///< the value is a JSON object, or absent
        bool isWhole = true;  ///< every entry has a palette colour
    };
    static Decoded decode(const std::optional<QByteArray> &json);
    void change(const std::function<void(Colors &)> &edit);
    void take(Colors colors);

    UserDefaults &m_defaults;
    Colors m_colors;
    std::vector<Observer> m_observers;
};

} // namespace brellin
