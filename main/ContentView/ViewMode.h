#pragma once

namespace brellin {

/// A list with columns, or a grid of tiles.
enum class ViewMode { Details, Icons };

} // namespace brellin
