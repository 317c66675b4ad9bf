#pragma once

namespace brellin {

/// A list with columns, or a grid of icons.
enum class ViewMode { Details, Icons };

} // namespace brellin
