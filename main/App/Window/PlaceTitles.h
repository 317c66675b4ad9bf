#pragma once

#include "Places/KnownFolders.h"
#include "Places/Place.h"

#include <QIcon>

namespace brellin {

/// The name of a place in menus: "Downloads", "Suche „brief“ in Dokumente", "Markierung Rot".
QString titleOf(const Place &place, const KnownFolders &folders);
QIcon iconOf(const Place &place);

} // namespace brellin
