#pragma once

#include "Disk/MountTable.h"

#include <QObject>

#include <functional>
#include <memory>
#include <vector>

namespace brellin {

/// Port to the mount table and its changes.
class MountSource {
public:
    virtual ~MountSource() = default;
    virtual std::vector<Mount> table() const = 0;
    /// Calls `changed` on the main thread after every change, until the returned object is destroyed. Null if changes
    /// cannot be observed.
    virtual std::unique_ptr<QObject> watch(std::function<void()> changed) = 0;
};

/// The real mount table.
class SystemMountSource : public MountSource {
public:
    std::vector<Mount> table() const override { return currentMountTable(); }
    std::unique_ptr<QObject> watch(std::function<void()> changed) override;
};

} // namespace brellin
