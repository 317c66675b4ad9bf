#pragma once

#include "Agent/Model/ModelTexts.h"

#include <QString>

#include <vector>

namespace brellin {

/// One paragraph of the guide with its heading.
struct GuideSection {
    QString symbol;
    QString title;
    QString text;
};

/// The guide's text for a system.
std::vector<GuideSection> guideSections(TextSystem system = ownTextSystem());

} // namespace brellin
