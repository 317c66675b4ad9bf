#pragma once

#include <QObject>
#include <QVariant>

class QDBusVariant;

namespace brellin {

class Theme;

/// Makes the look follow the desktop: dark or light, and whether things may move. Asks without waiting; where nobody
/// answers, the look stays as it is.
class DesktopSettings : public QObject {
    Q_OBJECT
public:
    DesktopSettings(Theme &theme, QObject *parent);

    /// While the user has chosen an appearance the desktop's does not count.
    void setFollowsAppearance(bool follows);

private:
    void ask();
    void take(const QString &space, const QString &key, const QVariant &value);
    Q_SLOT void settingChanged(const QString &space, const QString &key, const QDBusVariant &value);

    Theme &m_theme;
    bool m_follows = true;
    bool m_desktopDark = false;
};

} // namespace brellin
