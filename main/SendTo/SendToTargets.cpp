#include "SendTo/SendToTargets.h"

#include "Base/Json.h"
#include "System/StoredKind.h"

#include <algorithm>
#include <array>
#include <utility>

namespace brellin {

template <>
struct JsonWords<SendToTarget::Kind> {
    static constexpr std::array words{
        std::pair{SendToTarget::Kind::Folder, u"folder"}, std::pair{SendToTarget::Kind::Mail, u"mail"},
        std::pair{SendToTarget::Kind::Zip, u"zip"}, std::pair{SendToTarget::Kind::DesktopAlias, u"desktopAlias"}};
};

template <>
struct JsonTable<SendToTarget> {
    static constexpr std::tuple fields{field("id", &SendToTarget::id), field("kind", &SendToTarget::kind),
                                       field("name", &SendToTarget::name), field("folder", &SendToTarget::folder)};
};

namespace {

using Kind = SendToTarget::Kind;
using Targets = std::vector<SendToTarget>;

const QString key = QStringLiteral("sendToTargets");

QString nameOf(Kind kind)
{
    switch (kind) {
    case Kind::Mail:
        return QStringLiteral("E-Mail-Empfänger");
    case Kind::Zip:
        return QStringLiteral("ZIP-Archiv");
    case Kind::DesktopAlias:
        return QStringLiteral("Schreibtisch (Verknüpfung)");
    case Kind::Folder:
        break;
    }
    return {};
}

SendToTarget newTarget(Kind kind, const QString &name, const Location &folder = {})
{
    return {QUuid::createUuid(), kind, name, folder};
}

} // namespace

Targets usualSendToTargets(const KnownFolders &folders)
{
    const Location &documents = folders.dir(StandardFolder::Documents);
    return {newTarget(Kind::DesktopAlias, nameOf(Kind::DesktopAlias)),
            newTarget(Kind::Folder, folders.title(documents), documents), newTarget(Kind::Mail, nameOf(Kind::Mail)),
            newTarget(Kind::Zip, nameOf(Kind::Zip))};
}

StoredKind SendToTargets::kind()
{
    return storedKind<SendToTarget>(key);
}

SendToTargets::SendToTargets(UserDefaults &defaults, const KnownFolders &folders)
    : m_defaults(defaults)
    , m_folders(folders)
{
    publish(targets, usualSendToTargets(m_folders));
    reload();
}

void SendToTargets::reload()
{
    // A stored empty list is intended.
    publish(targets, storedList<SendToTarget>(m_defaults, key).value_or(targets.get()));
}

void SendToTargets::change(const std::function<void(Targets &)> &edit)
{
    // Re-read, since another process may have changed the list. The defaults are stored only once something changes.
    Targets changed;
    const Result<void> stored =
        updateList<SendToTarget>(m_defaults, key, [&](std::optional<Targets> list) -> std::optional<Targets> {
            changed = list ? *std::move(list) : targets.get();
            edit(changed);
            return changed;
        });
    if (stored)
        publish(targets, changed);
    publish(errorMessage, stored ? std::nullopt : std::optional(stored.error().message));
}

void SendToTargets::addFolder(const Location &folder, const QString &name)
{
    const Location place = standardised(folder);
    change([&](Targets &list) {
        const bool known = std::ranges::any_of(
            list, [&](const SendToTarget &one) { return one.kind == Kind::Folder && one.folder == place; });
        if (!known)
            list.push_back(newTarget(Kind::Folder, name.isEmpty() ? m_folders.title(place) : name, place));
    });
}

void SendToTargets::add(Kind kind)
{
    if (kind == Kind::Folder)
        return;
    change([&](Targets &list) {
        if (std::ranges::find(list, kind, &SendToTarget::kind) == list.end())
            list.push_back(newTarget(kind, nameOf(kind)));
    });
}

void SendToTargets::rename(const QUuid &id, const QString &name)
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty())
        return;
    change([&](Targets &list) {
        if (const auto target = std::ranges::find(list, id, &SendToTarget::id); target != list.end())
            target->name = trimmed;
    });
}

void SendToTargets::remove(const QUuid &id)
{
    change([&](Targets &list) { std::erase_if(list, [&](const SendToTarget &one) { return one.id == id; }); });
}

void SendToTargets::move(const QUuid &id, int to)
{
    change([&](Targets &list) {
        const auto target = std::ranges::find(list, id, &SendToTarget::id);
        if (target == list.end())
            return;
        SendToTarget moved = std::move(*target);
        list.erase(target);
        list.insert(list.begin() + std::clamp(to, 0, static_cast<int>(list.size())), std::move(moved));
    });
}

void SendToTargets::restoreDefaults()
{
    change([&](Targets &list) { list = usualSendToTargets(m_folders); });
}

} // namespace brellin
