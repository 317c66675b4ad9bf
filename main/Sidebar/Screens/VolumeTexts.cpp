#include "Sidebar/Screens/VolumeTexts.h"

#include "Base/German.h"

#include <algorithm>

namespace brellin {

namespace {

QString freeText(const VolumeEntry &volume)
{
    return sizeText(volume.space->free) + QStringLiteral(" frei");
}

} // namespace

QString volumeNote(const VolumeEntry &volume)
{
    if (!volume.answering)
        return QStringLiteral("antwortet nicht");
    return volume.space ? freeText(volume) : QString();
}

QString volumeToolTip(const VolumeEntry &volume)
{
    QStringList lines{shown(volume.root)};
    if (volume.space)
        lines << QStringLiteral("%1 von %2").arg(freeText(volume), sizeText(volume.space->capacity));
    if (!volume.answering)
        lines << QStringLiteral("Der Server antwortet gerade nicht.");
    return lines.join(u'\n');
}

QString volumeSymbol(const VolumeEntry &volume)
{
    if (!volume.answering)
        return QStringLiteral("wifi-off");
    if (!volume.local)
        return QStringLiteral("network");
    return volume.ejectable ? QStringLiteral("usb") : QStringLiteral("externaldrive");
}

std::optional<double> usedShare(const VolumeEntry &volume)
{
    if (!volume.space || volume.space->capacity <= 0)
        return std::nullopt;
    const double share = static_cast<double>(volume.space->free) / static_cast<double>(volume.space->capacity);
    return std::clamp(1 - share, 0.0, 1.0);
}

} // namespace brellin
