#pragma once

#include "System/UserDefaults.h"

#include <QDateTime>
#include <QStringList>

namespace brellin {

/// A plain setting of the expected type, otherwise `usual`. Settings are a text file that people edit, so "nein" must
/// not count as a switch that is on.
bool plainSetting(const UserDefaults &defaults, const QString &key, bool usual);
/// A whole number from `least` to `most`, inclusive.
int plainSetting(const UserDefaults &defaults, const QString &key, int usual, int least, int most);
/// A finite number.
double plainSetting(const UserDefaults &defaults, const QString &key, double usual);
QString plainSetting(const UserDefaults &defaults, const QString &key, const QString &usual);
QStringList plainSetting(const UserDefaults &defaults, const QString &key, const QStringList &usual);
/// A valid date.
std::optional<QDateTime> plainDate(const UserDefaults &defaults, const QString &key);

} // namespace brellin
