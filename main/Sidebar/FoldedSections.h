#pragma once

#include "Base/Published.h"
#include "Base/Result.h"
#include "System/UserDefaults.h"

#include <QString>

#include <set>

namespace brellin {

/// Which sections of the sidebar are folded, in every window: the user default "sidebarFolded". Lives on the main thread.
class FoldedSections : public Model<FoldedSections> {
public:
    /// The settings outlive it.
    explicit FoldedSections(UserDefaults &defaults);

    Published<std::set<QString>> folded;

    /// A failure to store it is returned; the section is folded until the program ends all the same.
    Result<void> setFolded(const QString &section, bool fold);
    /// Takes over what another program has stored. A list that cannot be read changes nothing.
    void reload();

private:
    UserDefaults &m_defaults;
};

} // namespace brellin
