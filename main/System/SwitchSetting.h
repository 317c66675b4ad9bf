#pragma once

#include "System/PlainSetting.h"

namespace brellin {

/// A yes-or-no setting and what holds while nobody has stored it.
struct SwitchSetting {
    QString key;
    bool usual = false;

    bool isOn(const UserDefaults &defaults) const { return plainSetting(defaults, key, usual); }
};

} // namespace brellin
