#pragma once

#include <QObject>
#include <QVariant>

class QDBusVariant;

namespace brellin {

class Theme;

/// Makes the theme follow the desktop's dark mode and its setting for animations. Asks asynchronously; without an
/// answer the theme stays as it is.
class DesktopSettings : public QObject {
    Q_OBJECT
public:
    DesktopSettings(Theme &theme, QObject *parent);

    /// Pass false while the user has chosen an appearance; the desktop's is then ignored.
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
