#pragma once

#include "Base/Location.h"
#include "Base/Published.h"
#include "Places/KnownFolders.h"
#include "System/UserDefaults.h"

#include <QString>
#include <QUuid>

#include <functional>
#include <optional>
#include <vector>

namespace brellin {

struct StoredKind;

/// An entry of the "Senden an" menu.
struct SendToTarget {
    enum class Kind {
        Folder,       ///< copy there; for a volume its top folder
        Mail,         ///< attach to a new message
        Zip,          ///< pack into an archive beside the files
        DesktopAlias, ///< create an alias of each file on the Desktop
    };
    QUuid id;
    Kind kind = Kind::Folder;
    QString name;    ///< as shown in the menu
    Location folder; ///< for `Kind::Folder` only

    bool operator==(const SendToTarget &) const = default;
};

/// The ordered send-to targets, stored as "sendToTargets". Only manages the list: callers carry out a choice according
/// to its kind. Lives on the main thread.
class SendToTargets : public Model<SendToTargets> {
public:
    static StoredKind kind();
    SendToTargets(UserDefaults &defaults, const KnownFolders &folders);

    Published<std::vector<SendToTarget>> targets;
    Published<std::optional<QString>> errorMessage;

    /// Appends a folder; one that is already in the list stays where it is.
    void addFolder(const Location &folder, const QString &name = {});
    /// Appends a target that is not a folder, if it is missing.
    void add(SendToTarget::Kind kind);
    void rename(const QUuid &id, const QString &name);
    void remove(const QUuid &id);
    /// Moves a target to an index of the list.
    void move(const QUuid &id, int to);
    /// Resets the list to the targets of a new account.
    void restoreDefaults();
    /// Re-reads the list; another process may have changed it.
    void reload();

private:
    void change(const std::function<void(std::vector<SendToTarget> &)> &edit);

    UserDefaults &m_defaults;
    const KnownFolders &m_folders;
};

/// The default targets: Desktop alias, Documents, mail, ZIP.
std::vector<SendToTarget> usualSendToTargets(const KnownFolders &folders);

} // namespace brellin
