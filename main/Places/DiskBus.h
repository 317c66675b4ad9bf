#pragma once

#include "Base/Result.h"

#include <QMap>
#include <QString>
#include <QVariant>

namespace brellin {

/// The objects of a D-Bus service on the system bus: path → interface → property → value.
using BusObjects = QMap<QString, QMap<QString, QVariantMap>>;

/// Port to UDisks2 on the system bus. Blocking: call on workers only.
class DiskBus {
public:
    virtual ~DiskBus() = default;
    virtual Result<BusObjects> objects() = 0;
    /// Calls a method whose only argument is a dictionary of options. The failure's `code` is
    /// `errc::device_or_resource_busy` or `errc::permission_denied` if the service reported that.
    virtual Result<void> call(const QString &path, const QString &interface, const QString &method) = 0;
};

/// The real system bus.
class SystemDiskBus : public DiskBus {
public:
    Result<BusObjects> objects() override;
    Result<void> call(const QString &path, const QString &interface, const QString &method) override;
};

} // namespace brellin
