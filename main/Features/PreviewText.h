#pragma once

#include "Features/PreviewContent.h"

#include <QByteArray>
#include <QStringDecoder>

#include <optional>

namespace brellin {

/// Number of bytes read from a text file.
constexpr qsizetype previewTextBytes = 256 * 1024;

/// Decodes the beginning of a file as UTF-8, UTF-16 or otherwise Latin-1; nullopt if it is binary. `cutOff`: the file
/// continues. Breaks very long lines, since views lay them out slowly.
std::optional<PreviewText> previewText(const QByteArray &beginning, bool cutOff);

/// The form of UTF-16 that a file is in, with a byte order mark or without one; nullopt for other text and binary files.
std::optional<QStringConverter::Encoding> utf16Of(const QByteArray &beginning);

} // namespace brellin
