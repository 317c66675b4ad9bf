#pragma once

#include "Base/Published.h"
#include "Base/Result.h"
#include "System/UserDefaults.h"

#include <QString>

#include <set>

namespace brellin {

/// The folded sections of the sidebar, shared by all windows and stored in the setting "sidebarFolded". Lives on the
/// main thread.
class FoldedSections : public Model<FoldedSections> {
public:
    /// `defaults` must outlive it.
    explicit FoldedSections(UserDefaults &defaults);

    Published<std::set<QString>> folded;

    /// Folds or unfolds for this run in any case; returns the failure if that cannot be stored.
    Result<void> setFolded(const QString &section, bool fold);
    /// Takes over what another program stored; ignores an unreadable list.
    void reload();

private:
    UserDefaults &m_defaults;
};

} // namespace brellin
