#include "Places/MountSource.h"

#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

namespace {

/// The kernel signals each change of the open mount table with POLLPRI.
class MountWatch : public QObject {
public:
    MountWatch(int table, std::function<void()> changed) : m_table(table), m_notifier(table, QSocketNotifier::Exception)
    {
        connect(&m_notifier, &QSocketNotifier::activated, this, [changed = std::move(changed)] { changed(); });
    }
    ~MountWatch() override
    {
        m_notifier.setEnabled(false);
        ::close(m_table);
    }

private:
    int m_table;
    QSocketNotifier m_notifier;
};

} // namespace

std::unique_ptr<QObject> SystemMountSource::watch(std::function<void()> changed)
{
    const int table = ::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC);
    return table < 0 ? nullptr : std::make_unique<MountWatch>(table, std::move(changed));
}

} // namespace brellin
