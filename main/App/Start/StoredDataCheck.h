#pragma once

#include "Base/AbandonablePool.h"
#include "Base/Job.h"

#include <QStringList>

namespace brellin {

class Notices;
class Services;

/// Checks the stored data on a worker when the windows open: creates missing last good versions, and adds a notice for
/// every list or log that is damaged or unreadable. The agent checks its own lists.
class StoredDataCheck {
public:
    /// Both must outlive this object, and the services its worker too (see Shutdown).
    StoredDataCheck(Services &services, Notices &notices);

    void start();

private:
    Services &m_services;
    Notices &m_notices;
    std::shared_ptr<QThreadPool> m_pool = abandonablePool(std::chrono::seconds(2));
    Job<QStringList> m_job;
};

} // namespace brellin
