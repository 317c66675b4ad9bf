#pragma once

#include <QString>

#include <array>

namespace brellin {

/// The places of the agent's view behind its start page, in the order of their cards.
enum class AgentArea { Cleanup, Photos, Receipts, Projects, History };
inline constexpr std::array agentAreas{AgentArea::Cleanup, AgentArea::Photos, AgentArea::Receipts, AgentArea::Projects,
                                       AgentArea::History};
QString title(AgentArea area);

/// What opens over the view.
enum class AgentSheet { CleanupRules, ReceiptRules, Settings, Recipes };
QString title(AgentSheet sheet);
QString subtitle(AgentSheet sheet);

} // namespace brellin
