#pragma once

#include "Features/PreviewContent.h"

#include <QByteArray>

#include <optional>

namespace brellin {

/// Of a text so many bytes are read.
constexpr qsizetype previewTextBytes = 256 * 1024;

/// The text that a file's first bytes are, in UTF-8, UTF-16 or, where they are neither, Latin-1; nothing where they are no
/// text. `cutOff`: the file goes on. Very long lines are broken, because no view can lay them out quickly.
std::optional<PreviewText> previewText(const QByteArray &beginning, bool cutOff);

} // namespace brellin
