#pragma once

#include "Agent/Screens/AgentPage.h"

namespace brellin {

/// The built-in guide to the agent.
class GuidePage : public AgentPage {
    Q_OBJECT
public:
    explicit GuidePage(QWidget *parent);
};

} // namespace brellin
