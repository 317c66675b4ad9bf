#pragma once

#include "App/Window/WindowServices.h"
#include "Look/SheetFrame.h"

class QCheckBox;

namespace brellin {

struct SwitchSetting;

/// The settings of the file manager.
class SettingsSheet : public SheetFrame {
    Q_OBJECT
public:
    SettingsSheet(const WindowServices &services, QWidget *window);
    Q_SIGNAL void failed(const QString &message);

private:
    void addAppearance();
    QCheckBox *addSwitch(const SwitchSetting &setting, const QString &title, const QString &explanation);
    void store(const QString &key, const QVariant &value);

    WindowServices m_services;
};

/// Applies the setting "appearance": "hell", "dunkel", or otherwise the desktop's.
void applyAppearance(const UserDefaults &defaults, DesktopSettings &desktop);

} // namespace brellin
