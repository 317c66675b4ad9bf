#pragma once

#include "Places/VolumeList.h"

#include <QString>

#include <optional>

namespace brellin {

/// "212 GB frei", or that the volume does not answer; empty while nothing is known.
QString volumeNote(const VolumeEntry &volume);
/// The same with the whole size, and where it is mounted.
QString volumeToolTip(const VolumeEntry &volume);
QString volumeSymbol(const VolumeEntry &volume);
/// 0 … 1; nothing where it is not known.
std::optional<double> usedShare(const VolumeEntry &volume);

/// A size to be taken in at a glance: "8,7 GB", "212 GB", "1,8 TB".
QString roundedSize(qint64 bytes);

} // namespace brellin
