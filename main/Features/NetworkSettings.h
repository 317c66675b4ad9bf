#pragma once

#include "System/SwitchSetting.h"

namespace brellin {

/// Whether folders on network volumes are counted without being asked for.
inline const SwitchSetting folderSizesNetwork{QStringLiteral("folderSizesNetwork"), false};
/// Whether thumbnails are made of files on network volumes, which reads each of them.
inline const SwitchSetting thumbnailsNetwork{QStringLiteral("thumbnailsNetwork"), false};

} // namespace brellin
