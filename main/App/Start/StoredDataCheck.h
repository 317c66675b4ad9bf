#pragma once

#include "Base/AbandonablePool.h"
#include "Base/Job.h"

#include <QStringList>

namespace brellin {

class Notices;
class Services;

/// Checks what is stored when the windows open, on a worker: a list without a last good version gets one, and each list or
/// log that is damaged or cannot be read becomes a notice. The agent does this for its own lists.
class StoredDataCheck {
public:
    /// Both outlive it; the services outlive its worker too (see Shutdown).
    StoredDataCheck(Services &services, Notices &notices);

    void start();

private:
    Services &m_services;
    Notices &m_notices;
    std::shared_ptr<QThreadPool> m_pool = abandonablePool(std::chrono::seconds(2));
    Job<QStringList> m_job;
};

} // namespace brellin
