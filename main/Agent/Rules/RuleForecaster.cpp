#include "Agent/Rules/RuleForecaster.h"

#include "Base/AbandonablePool.h"

namespace brellin {

RuleForecaster::RuleForecaster(const RuleServices &services) : m_services(services), m_pool(abandonablePool()) {}

void RuleForecaster::show(const std::optional<Location> &entry, const std::vector<CleanupRule> &rules,
                          const std::vector<FolderProfile> &profiles)
{
    m_job.reset();
    publish(forecast, std::optional<RuleForecast>());
    if (!entry)
        return;
    passAbandonedWork(*m_pool);
    m_job = std::make_unique<Job<Result<RuleForecast>>>();
    m_job->start(
        *m_pool,
        [services = m_services, rules, profiles, file = *entry](JobControl &control) {
            return RuleMatching(services.locations, services.clock).forecast(rules, profiles, file, &control);
        },
        [this](Result<RuleForecast> found) {
            if (found)
                publish(forecast, std::optional(*std::move(found)));
        });
}

} // namespace brellin
