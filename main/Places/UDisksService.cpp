#include "Places/UDisksService.h"

namespace brellin {

namespace {

const QString blockInterface = QStringLiteral("org.freedesktop.UDisks2.Block");
const QString driveInterface = QStringLiteral("org.freedesktop.UDisks2.Drive");
const QString fileSystemInterface = QStringLiteral("org.freedesktop.UDisks2.Filesystem");
const QString encryptedInterface = QStringLiteral("org.freedesktop.UDisks2.Encrypted");

/// A device path; the service returns it as NUL-terminated bytes.
std::string deviceOf(const QVariantMap &block)
{
    const QByteArray bytes = block.value(QStringLiteral("Device")).toByteArray();
    return {bytes.constData()};
}

bool flag(const QVariantMap &properties, const char *name)
{
    return properties.value(QLatin1StringView(name)).toBool();
}

/// The drive of a block device; for an unlocked device that of the encrypted one.
QVariantMap driveOf(const BusObjects &objects, const QVariantMap &block)
{
    const QString locked = block.value(QStringLiteral("CryptoBackingDevice")).toString();
    const QVariantMap beneath = objects.contains(locked) ? objects.value(locked).value(blockInterface) : block;
    return objects.value(beneath.value(QStringLiteral("Drive")).toString()).value(driveInterface);
}

bool isRemovable(const QVariantMap &block, const QVariantMap &drive)
{
    return !flag(block, "HintSystem") && (flag(drive, "Removable") || flag(drive, "MediaRemovable") ||
                                          drive.value(QStringLiteral("ConnectionBus")) == QStringLiteral("usb"));
}

Failure ejectFailure(const Failure &cause)
{
    if (cause.is(std::errc::device_or_resource_busy))
        return {
            QStringLiteral("Der Datenträger wird noch benutzt. Schließe, was von ihm offen ist, und versuche es noch "
                           "einmal."),
            cause.code};
    if (cause.is(std::errc::permission_denied))
        return {QStringLiteral("Du darfst diesen Datenträger nicht auswerfen."), cause.code};
    return {QStringLiteral("Der Datenträger lässt sich nicht auswerfen. (%1)").arg(cause.message), cause.code};
}

} // namespace

Result<std::map<std::string, DiskFacts>> UDisksService::facts()
{
    const BusObjects objects = TRY(m_bus.objects());
    std::map<std::string, DiskFacts> facts;
    for (const auto &interfaces : objects) {
        if (!interfaces.contains(blockInterface))
            continue;
        const QVariantMap block = interfaces.value(blockInterface);
        const QVariantMap drive = driveOf(objects, block);
        facts[deviceOf(block)] = {block.value(QStringLiteral("IdLabel")).toString(), isRemovable(block, drive),
                                  flag(drive, "Ejectable")};
    }
    return facts;
}

Result<void> UDisksService::eject(const std::string &device)
{
    const BusObjects objects = TRY(m_bus.objects());
    for (auto object = objects.begin(); object != objects.end(); ++object) {
        const QVariantMap block = object->value(blockInterface);
        if (block.isEmpty() || deviceOf(block) != device)
            continue;
        if (const auto done = m_bus.call(object.key(), fileSystemInterface, QStringLiteral("Unmount")); !done)
            return failure(ejectFailure(done.error()));
        const QString locked = block.value(QStringLiteral("CryptoBackingDevice")).toString();
        if (objects.contains(locked)) {
            if (const auto done = m_bus.call(locked, encryptedInterface, QStringLiteral("Lock")); !done)
                return failure(ejectFailure(done.error()));
        }
        const QVariantMap beneath = objects.contains(locked) ? objects.value(locked).value(blockInterface) : block;
        // The files are safe by now, so it is no failure if the drive keeps its medium (a stick with a second partition
        // in use).
        if (const QString drive = beneath.value(QStringLiteral("Drive")).toString();
            flag(objects.value(drive).value(driveInterface), "Ejectable")) [[maybe_unused]]
            const auto ejected = m_bus.call(drive, driveInterface, QStringLiteral("Eject"));
        return {};
    }
    return failure(QStringLiteral("Diesen Datenträger kennt das System nicht."));
}

} // namespace brellin
