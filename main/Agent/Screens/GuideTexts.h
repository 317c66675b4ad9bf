#pragma once

#include "Agent/Model/ModelTexts.h"

#include <QString>

#include <vector>

namespace brellin {

/// One paragraph of the guide with its head.
struct GuideSection {
    QString symbol;
    QString title;
    QString text;
};

/// The guide to the agent, as it is true on a system.
std::vector<GuideSection> guideSections(TextSystem system = ownTextSystem());

} // namespace brellin
