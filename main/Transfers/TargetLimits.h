#pragma once

#include "Base/Location.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <string_view>

namespace brellin {

/// What a destination's file system cannot store.
struct TargetLimits {
    /// `Windows` allows no < > : " \ | ? *, no control characters, and no dot or blank at the end.
    enum class Names { Any, Windows };
    Names names = Names::Any;
    bool ignoresCase = false;              ///< case-insensitive
    bool ignoresForm = false;              ///< ignores Unicode composition
    bool keepsHoles = true;                ///< stores sparse files without their holes
    std::size_t nameBytes = 255;           ///< maximum name length
    std::optional<std::int64_t> fileBytes; ///< maximum file size; none if irrelevant

    /// Limits of a file system type, e.g. "vfat".
    static TargetLimits of(const QString &fileSystem);

    bool anythingGoes() const { return names == Names::Any && !ignoresCase && nameBytes >= 255 && !fileBytes; }
    /// Why the name cannot be stored; none if it can.
    std::optional<QString> nameFault(std::string_view name) const;
    std::optional<QString> sizeFault(std::int64_t bytes) const;
    /// Names with equal keys are the same name there.
    QString keyOf(const QString &name) const;
};

} // namespace brellin
