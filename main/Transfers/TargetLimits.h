#pragma once

#include "Base/Location.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <string_view>

namespace brellin {

/// What a destination's volume cannot hold.
struct TargetLimits {
    enum class Names {
        Any,
        Windows
    }; ///< of Windows: no < > : " \ | ? *, no control characters, no dot or blank at the end
    Names names = Names::Any;
    bool ignoresCase = false;              ///< sees no difference between "a" and "A" …
    bool ignoresForm = false;              ///< … nor between a composed "ü" and one of two characters
    bool keepsHoles = true;                ///< a sparse file stays one
    std::size_t nameBytes = 255;           ///< longest name
    std::optional<std::int64_t> fileBytes; ///< largest file

    /// By the type of the file system ("vfat").
    static TargetLimits of(const QString &fileSystem);

    bool anythingGoes() const { return names == Names::Any && !ignoresCase && nameBytes >= 255 && !fileBytes; }
    /// Why the volume cannot hold this name; nothing where it can.
    std::optional<QString> nameFault(std::string_view name) const;
    std::optional<QString> sizeFault(std::int64_t bytes) const;
    /// Alike for names that are one there.
    QString keyOf(const QString &name) const;
};

} // namespace brellin
