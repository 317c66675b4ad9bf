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

/// One place in the "Senden an" menu.
struct SendToTarget {
    enum class Kind {
        Folder,       ///< copied there; a volume is its top folder
        Mail,         ///< attached to a new mail
        Zip,          ///< packed into an archive beside them
        DesktopAlias, ///< an alias of each on the Desktop
    };
    QUuid id;
    Kind kind = Kind::Folder;
    QString name;    ///< as the menu shows it
    Location folder; ///< of `Kind::Folder` alone

    bool operator==(const SendToTarget &) const = default;
};

/// The send-to targets in their order, kept in the user default "sendToTargets". Who carries out a choice reads its kind:
/// copying belongs to whoever transfers. Lives on the main thread.
class SendToTargets : public Model<SendToTargets> {
public:
    static StoredKind kind();
    SendToTargets(UserDefaults &defaults, const KnownFolders &folders);

    Published<std::vector<SendToTarget>> targets;
    Published<std::optional<QString>> errorMessage;

    /// Adds a folder at the end; one that is there already stays where it is.
    void addFolder(const Location &folder, const QString &name = {});
    /// Adds one of the targets that are no folder, if it is missing.
    void add(SendToTarget::Kind kind);
    void rename(const QUuid &id, const QString &name);
    void remove(const QUuid &id);
    /// Moves a target to a place in the list.
    void move(const QUuid &id, int to);
    /// The targets of a new account.
    void restoreDefaults();
    /// Takes over what another window has stored.
    void reload();

private:
    void change(const std::function<void(std::vector<SendToTarget> &)> &edit);

    UserDefaults &m_defaults;
    const KnownFolders &m_folders;
};

/// The targets that an account begins with: Desktop alias, Documents, mail, ZIP.
std::vector<SendToTarget> usualSendToTargets(const KnownFolders &folders);

} // namespace brellin
