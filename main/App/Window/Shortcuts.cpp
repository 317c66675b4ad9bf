#include "App/Window/Shortcuts.h"

#include "ContentView/StoredShortcuts.h"

#include <QMetaEnum>

#include <algorithm>

namespace brellin {

namespace {

using StoredShortcuts = std::vector<StoredShortcut>;

QString nameOf(CommandId id)
{
    return QString::fromLatin1(QMetaEnum::fromType<CommandId>().valueToKey(static_cast<int>(id)));
}

std::optional<CommandId> commandOf(const QString &name)
{
    bool known = false;
    const int value = QMetaEnum::fromType<CommandId>().keyToValue(name.toLatin1().constData(), &known);
    return known ? std::optional(static_cast<CommandId>(value)) : std::nullopt;
}

bool isUsed(const std::map<CommandId, Shortcuts::Keys> &own, const QKeySequence &key)
{
    return std::ranges::any_of(own, [&key](const auto &one) { return std::ranges::count(one.second, key) > 0; });
}

/// Whether lists and fields need the key: it types, moves, confirms or cancels.
bool isNeeded(const QKeySequence &key)
{
    const QKeyCombination typed = key[0];
    if (typed.keyboardModifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return false;
    constexpr int firstUnprintable = Qt::Key_Escape;
    static const std::vector<Qt::Key> moving{
        Qt::Key_Escape, Qt::Key_Tab,  Qt::Key_Backtab, Qt::Key_Return, Qt::Key_Enter,  Qt::Key_Left,    Qt::Key_Right,
        Qt::Key_Up,     Qt::Key_Down, Qt::Key_Home,    Qt::Key_End,    Qt::Key_PageUp, Qt::Key_PageDown};
    return typed.key() < firstUnprintable || std::ranges::count(moving, typed.key()) > 0;
}

} // namespace

Shortcuts::Shortcuts(UserDefaults &defaults) : m_defaults(defaults)
{
    reload();
}

/// Of two commands with the same key, which only an edited file can contain, the first has it.
void Shortcuts::reload()
{
    const StoredList<StoredShortcut> list = storedList<StoredShortcut>(m_defaults, shortcutsKey);
    if (!list.isWhole() && !list.isKnown())
        return;
    std::map<CommandId, Keys> read;
    for (const StoredShortcut &one : list.records) {
        const std::optional<CommandId> id = commandOf(one.command);
        if (!id || read.contains(*id))
            continue;
        Keys keys;
        for (const QString &text : one.keys)
            if (const QKeySequence key(text, QKeySequence::PortableText);
                key.count() == 1 && key.toString(QKeySequence::PortableText) == text && !isNeeded(key) &&
                !isUsed(read, key))
                keys.push_back(key);
        read[*id] = std::move(keys);
    }
    publish(own, std::move(read));
}

Shortcuts::Keys Shortcuts::keysOf(CommandId id) const
{
    if (const auto found = own.get().find(id); found != own.get().end())
        return found->second;
    Keys keys = windowCommand(id).keys;
    std::erase_if(keys, [this](const QKeySequence &key) { return isUsed(own.get(), key); });
    return keys;
}

QString Shortcuts::textOf(CommandId id) const
{
    const Keys keys = keysOf(id);
    return keys.empty() ? QString() : keyText(keys.front());
}

std::optional<CommandId> Shortcuts::ownerOf(const QKeySequence &key, CommandId except) const
{
    for (const WindowCommand &one : commandTable())
        if (const Keys keys = keysOf(one.id); one.id != except && std::ranges::count(keys, key) > 0)
            return one.id;
    return std::nullopt;
}

Result<void> Shortcuts::checkFree(CommandId id, const Keys &keys) const
{
    for (const QKeySequence &key : keys)
        if (const std::optional<CommandId> other = ownerOf(key, id))
            return failure(QStringLiteral("„%1“ gehört schon zu „%2“.").arg(keyText(key), windowCommand(*other).title));
    return {};
}

Result<void> Shortcuts::setKey(CommandId id, const QKeySequence &key)
{
    if (key.isEmpty() || isNeeded(key))
        return failure(QStringLiteral("„%1“ wird zum Tippen und Bewegen gebraucht.").arg(keyText(key)));
    TRY(checkFree(id, {key}));
    return store(id, Keys{key});
}

Result<void> Shortcuts::removeKeys(CommandId id)
{
    return store(id, Keys());
}

Result<void> Shortcuts::reset(CommandId id)
{
    TRY(checkFree(id, windowCommand(id).keys));
    return store(id, std::nullopt);
}

Result<void> Shortcuts::resetAll()
{
    TRY(storeList<StoredShortcut>(m_defaults, shortcutsKey, {}));
    publish(own, {});
    return {};
}

Result<void> Shortcuts::store(CommandId id, const std::optional<Keys> &keys)
{
    TRY(updateList<StoredShortcut>(
        m_defaults, shortcutsKey, [&](std::optional<StoredShortcuts> list) -> std::optional<StoredShortcuts> {
            StoredShortcuts changed = list ? *std::move(list) : StoredShortcuts();
            std::erase_if(changed, [&](const StoredShortcut &one) { return one.command == nameOf(id); });
            if (!keys)
                return changed;
            StoredShortcut record{nameOf(id), {}};
            for (const QKeySequence &key : *keys)
                record.keys.push_back(key.toString(QKeySequence::PortableText));
            changed.push_back(std::move(record));
            return changed;
        }));
    reload();
    return {};
}

} // namespace brellin
