#pragma once

#include "Disk/MountTable.h"

#include <QObject>

#include <functional>
#include <memory>
#include <vector>

namespace brellin {

/// The port to the table of mounts and its changes.
class MountSource {
public:
    virtual ~MountSource() = default;
    virtual std::vector<Mount> table() const = 0;
    /// Calls `changed` on the main thread after every change, for as long as the answer lives. Null where changes cannot be
    /// heard of.
    virtual std::unique_ptr<QObject> watch(std::function<void()> changed) = 0;
};

/// The real one.
class SystemMountSource : public MountSource {
public:
    std::vector<Mount> table() const override { return currentMountTable(); }
    std::unique_ptr<QObject> watch(std::function<void()> changed) override;
};

} // namespace brellin
