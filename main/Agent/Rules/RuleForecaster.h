#pragma once

#include "Agent/Rules/RuleExplanation.h"
#include "Agent/Rules/RuleMatching.h"
#include "Agent/Rules/RuleServices.h"
#include "Base/Job.h"
#include "Base/Published.h"

#include <memory>
#include <optional>
#include <vector>

namespace brellin {

/// Says for the entry that is being looked at what the rules would do with it. Lives on the main thread, works beside it.
class RuleForecaster : public Model<RuleForecaster> {
public:
    Published<std::optional<RuleForecast>> forecast; ///< of the entry last asked for; nothing: not known yet

    /// The services outlive it.
    explicit RuleForecaster(const RuleServices &services);

    /// Asks for another entry, or for the same under changed rules; nothing: none is being looked at.
    void show(const std::optional<Location> &entry, const std::vector<CleanupRule> &rules,
              const std::vector<FolderProfile> &profiles);

private:
    RuleServices m_services;
    const std::shared_ptr<QThreadPool> m_pool; ///< an entry that does not answer keeps its thread
    std::unique_ptr<Job<Result<RuleForecast>>> m_job;
};

} // namespace brellin
