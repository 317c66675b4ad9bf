#include "Places/MountSource.h"

#include "Base/Descriptor.h"

#include <QSocketNotifier>

#include <fcntl.h>

namespace brellin {

namespace {

/// The kernel signals each change of the open mount table with POLLPRI.
class MountWatch : public QObject {
public:
    MountWatch(Descriptor table, std::function<void()> changed)
        : m_table(std::move(table))
        , m_notifier(m_table.number(), QSocketNotifier::Exception)
    {
        connect(&m_notifier, &QSocketNotifier::activated, this, [changed = std::move(changed)] { changed(); });
    }

private:
    Descriptor m_table; ///< outlives its notifier
    QSocketNotifier m_notifier;
};

} // namespace

std::unique_ptr<QObject> SystemMountSource::watch(std::function<void()> changed)
{
    Descriptor table(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC));
    return table.isOpen() ? std::make_unique<MountWatch>(std::move(table), std::move(changed)) : nullptr;
}

} // namespace brellin
