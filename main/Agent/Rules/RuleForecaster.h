#pragma once

#include "Agent/Rules/RuleForecast.h"
#include "Agent/Rules/RuleMatching.h"
#include "Agent/Rules/RuleServices.h"
#include "Base/Job.h"
#include "Base/Published.h"

#include <memory>
#include <optional>
#include <vector>

namespace brellin {

/// Predicts what the rules would do with the entry on display. Lives on the main thread, works on a worker.
class RuleForecaster : public Model<RuleForecaster> {
public:
    Published<std::optional<RuleForecast>> forecast; ///< for the last entry shown; nullopt: not known yet

    /// The services must outlive this object.
    explicit RuleForecaster(const RuleServices &services);

    /// Starts a forecast for another entry, or for the same under changed rules; nullopt: no entry on display.
    void show(const std::optional<Location> &entry, const std::vector<CleanupRule> &rules,
              const std::vector<FolderProfile> &profiles);

private:
    RuleServices m_services;
    const std::shared_ptr<QThreadPool> m_pool; ///< own pool: an unresponsive volume blocks its thread
    std::unique_ptr<Job<Result<RuleForecast>>> m_job;
};

} // namespace brellin
