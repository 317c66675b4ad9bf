#pragma once

#include <QString>

#include <array>

namespace brellin {

/// The areas that open from the start page, in the order of their cards.
enum class AgentArea { Cleanup, Photos, Receipts, Projects, History };
inline constexpr std::array agentAreas{AgentArea::Cleanup, AgentArea::Photos, AgentArea::Receipts, AgentArea::Projects,
                                       AgentArea::History};
QString title(AgentArea area);

/// The sheets of the agent's view.
enum class AgentSheet { CleanupRules, ReceiptRules, Settings, Recipes };
QString title(AgentSheet sheet);
QString subtitle(AgentSheet sheet);

} // namespace brellin
