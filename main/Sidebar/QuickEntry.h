#pragma once

#include "Base/Location.h"

#include <QString>
#include <QUuid>

#include <optional>

namespace brellin {

/// One entry of the quick access.
struct QuickEntry {
    QUuid id; ///< identity in the list
    QString name;
    std::optional<Location> path;      ///< the folder; none for the photo library
    QString symbol;                    ///< drawn before the name
    std::optional<Location> imagePath; ///< a picture drawn instead of the symbol
    std::optional<QString> color;      ///< name of a palette tag

    bool operator==(const QuickEntry &) const = default;
};

} // namespace brellin
