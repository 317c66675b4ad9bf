#pragma once

#include "Base/Location.h"

#include <QString>
#include <QUuid>

#include <optional>

namespace brellin {

/// An entry of the quick access.
struct QuickEntry {
    QUuid id; ///< stable across renames and moves
    QString name;
    std::optional<Location> path;      ///< none for the photo library
    QString symbol;                    ///< symbol name
    std::optional<Location> imagePath; ///< picture shown instead of the symbol
    std::optional<QString> color;      ///< name of a palette tag

    bool operator==(const QuickEntry &) const = default;
};

} // namespace brellin
