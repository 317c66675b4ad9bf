#include "App/Window/SettingsSheet.h"

#include "Features/NetworkSettings.h"
#include "Look/Buttons.h"
#include "Look/DesktopSettings.h"
#include "Look/Labels.h"
#include "Look/Theme.h"
#include "Records/StepRecords.h"
#include "System/PlainSetting.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QVBoxLayout>

namespace brellin {

namespace {

const QString appearanceKey = QStringLiteral("appearance");
const QString scaleKey = QStringLiteral("fontFactor");
constexpr double usualScale = 1.0;
const QString light = QStringLiteral("hell");
const QString dark = QStringLiteral("dunkel");

} // namespace

void applyAppearance(const UserDefaults &defaults, DesktopSettings &desktop)
{
    Theme &theme = Theme::shared();
    const double factor = plainSetting(defaults, scaleKey, usualScale);
    theme.setFontFactor(factor >= 0.8 && factor <= 2 ? factor : usualScale);
    const QString chosen = plainSetting(defaults, appearanceKey, QString());
    if (chosen != light && chosen != dark) {
        desktop.setFollowsAppearance(true);
        return;
    }
    desktop.setFollowsAppearance(false);
    theme.setAppearance(chosen == dark ? Appearance::Dark : Appearance::Light);
}

SettingsSheet::SettingsSheet(const WindowServices &services, QWidget *window)
    : SheetFrame(QStringLiteral("Einstellungen"),
                 QStringLiteral("Aussehen und Dateiliste. Der Aufräum-Agent hat seine "
                                "eigenen Einstellungen auf seiner Seite."),
                 {620, 0}, window)
    , m_services(services)
{
    setObjectName(QStringLiteral("settingsSheet"));
    addAppearance();
    content()->addSpacing(scaled(10));
    content()->addWidget(makeHeading(QStringLiteral("Ordnergrößen und Vorschaubilder"), this));
    addSwitch(folderSizesNetwork, QStringLiteral("Ordnergrößen auch auf Netzlaufwerken berechnen"),
              QStringLiteral("Kann lange dauern und den Server belasten."));
    addSwitch(thumbnailsNetwork, QStringLiteral("Vorschaubilder auch auf Netzlaufwerken zeigen"),
              QStringLiteral("Dafür wird jede Datei vom Server gelesen."));
    content()->addSpacing(scaled(10));
    content()->addWidget(makeHeading(QStringLiteral("Verlauf"), this));
    addSwitch(StepRecords::setting, QStringLiteral("Verlauf führen"),
              QStringLiteral("Was du mit Dateien tust, bleibt 90 Tage lang auf diesem Rechner vermerkt."));
    content()->addSpacing(scaled(10));
    content()->addWidget(makeHeading(QStringLiteral("Terminal"), this));
    auto *const terminal =
        new QLineEdit(plainSetting(services.defaults(), QStringLiteral("terminal"), QString()), this);
    terminal->setObjectName(QStringLiteral("terminalField"));
    terminal->setAccessibleName(QStringLiteral("Terminal"));
    terminal->setPlaceholderText(QStringLiteral("Befehl, z. B. konsole – leer: das Terminal des Systems"));
    connect(terminal, &QLineEdit::editingFinished, this,
            [this, terminal] { store(QStringLiteral("terminal"), terminal->text().trimmed()); });
    content()->addWidget(terminal);
    content()->addStretch(1);

    QPushButton *const done = makeButton(QStringLiteral("Fertig"), ButtonKind::Primary, QStringLiteral("done"), this);
    buttons()->addWidget(done);
    connect(done, &QAbstractButton::clicked, this, &SheetFrame::close);
}

void SettingsSheet::addAppearance()
{
    content()->addWidget(makeHeading(QStringLiteral("Aussehen"), this));
    auto *const row = new QHBoxLayout;
    auto *const tone = new QComboBox(this);
    tone->setObjectName(QStringLiteral("appearance"));
    tone->setAccessibleName(QStringLiteral("Aussehen"));
    tone->addItem(QStringLiteral("Wie das System"), QString());
    tone->addItem(QStringLiteral("Hell"), light);
    tone->addItem(QStringLiteral("Dunkel"), dark);
    tone->setCurrentIndex(std::max(0, tone->findData(plainSetting(m_services.defaults(), appearanceKey, QString()))));
    connect(tone, &QComboBox::activated, this, [this, tone] { store(appearanceKey, tone->currentData()); });
    auto *const size = new QComboBox(this);
    size->setObjectName(QStringLiteral("fontFactor"));
    size->setAccessibleName(QStringLiteral("Schriftgröße"));
    for (const int percent : {90, 100, 110, 125, 150})
        size->addItem(QStringLiteral("Schrift %1 %").arg(percent), percent / 100.0);
    const double factor = plainSetting(m_services.defaults(), scaleKey, usualScale);
    const int shownFactor = size->findText(QStringLiteral("Schrift %1 %").arg(qRound(factor * 100)));
    size->setCurrentIndex(shownFactor >= 0 ? shownFactor : size->findText(QStringLiteral("Schrift 100 %")));
    connect(size, &QComboBox::activated, this, [this, size] { store(scaleKey, size->currentData()); });
    row->addWidget(tone);
    row->addWidget(size);
    row->addStretch(1);
    content()->addLayout(row);
}

QCheckBox *SettingsSheet::addSwitch(const SwitchSetting &setting, const QString &title, const QString &explanation)
{
    auto *const box = new QCheckBox(title, this);
    box->setObjectName(setting.key);
    box->setChecked(setting.isOn(m_services.defaults()));
    connect(box, &QCheckBox::toggled, this, [this, key = setting.key](bool on) { store(key, on); });
    content()->addWidget(box);
    TextLabel *const text = makeSecondary(explanation, this);
    text->setContentsMargins(scaled(28), 0, 0, 0);
    content()->addWidget(text);
    return box;
}

void SettingsSheet::store(const QString &key, const QVariant &value)
{
    if (const Result<void> kept = m_services.defaults().setValue(key, value); !kept)
        Q_EMIT failed(kept.error().message);
    applyAppearance(m_services.defaults(), m_services.desktop);
}

} // namespace brellin
