#pragma once

#include "Base/Result.h"

#include <QMap>
#include <QString>
#include <QVariant>

namespace brellin {

/// The objects of a service on the system's message bus: path → interface → property → value.
using BusObjects = QMap<QString, QMap<QString, QVariantMap>>;

/// The port to UDisks2 on the system's message bus. Blocking: called on workers only.
class DiskBus {
public:
    virtual ~DiskBus() = default;
    virtual Result<BusObjects> objects() = 0;
    /// Calls a method that takes options only. `code` of a failure is `errc::device_or_resource_busy` or
    /// `errc::permission_denied` where the service said so.
    virtual Result<void> call(const QString &path, const QString &interface, const QString &method) = 0;
};

/// The real one.
class SystemDiskBus : public DiskBus {
public:
    Result<BusObjects> objects() override;
    Result<void> call(const QString &path, const QString &interface, const QString &method) override;
};

} // namespace brellin
