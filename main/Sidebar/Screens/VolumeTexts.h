#pragma once

#include "Places/VolumeList.h"

#include <QString>

#include <optional>

namespace brellin {

/// "212,4 GB frei", as in the status line, or "antwortet nicht"; empty if the space is unknown.
QString volumeNote(const VolumeEntry &volume);
/// Mount point, free space and capacity.
QString volumeToolTip(const VolumeEntry &volume);
QString volumeSymbol(const VolumeEntry &volume);
/// 0 to 1; none if unknown.
std::optional<double> usedShare(const VolumeEntry &volume);

} // namespace brellin
