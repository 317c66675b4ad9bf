#pragma once

#include "Base/Location.h"
#include "Base/Published.h"
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

/// The colours that the user gave his folders: the setting "folderColors" (path → name of a palette tag).
class FolderColors : public Model<FolderColors> {
public:
    static StoredKind kind();
    /// The settings outlive it.
    explicit FolderColors(UserDefaults &defaults);

    /// The palette tag whose colour a folder has.
    std::optional<QString> color(const Location &folder) const;
    /// Gives a folder a colour, or takes it away. A name that is not in the palette is ignored.
    void setColor(const Location &folder, std::optional<QString> tagName);
    /// A folder was renamed or moved: its colour and those of the folders in it go along.
    void moved(const Location &from, const Location &to);
    /// Reads the setting again: another program may have changed it.
    void reload();
    /// Calls `heard` with each folder whose colour has changed, for as long as `receiver` lives.
    void observe(QObject *receiver, std::function<void(const Location &)> heard);

private:
    using Colors = std::map<std::string, QString>; ///< by the path's bytes
    struct Observer {
        QPointer<QObject> receiver;
        std::function<void(const Location &)> heard;
    };

    struct Decoded {
        Colors colors;
        bool isObject = true; ///< or there is nothing
        bool isWhole = true;  ///< every entry has a colour of the palette
    };
    static Decoded decode(const std::optional<QByteArray> &json);
    void change(const std::function<void(Colors &)> &edit);
    void take(Colors colors);

    UserDefaults &m_defaults;
    Colors m_colors;
    std::vector<Observer> m_observers;
};

} // namespace brellin
