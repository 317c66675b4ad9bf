#include "App/ProgramFolders.h"
#include "App/Shutdown.h"
#include "App/Start/WindowComposition.h"
#include "App/TypedLocation.h"
#include "App/Window/SettingsSheet.h"
#include "App/Window/SingleInstance.h"
#include "App/Window/Windows.h"
#include "Base/Edition.h"
#include "Base/German.h"
#include "Look/DesktopSettings.h"
#include "Look/Theme.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QTranslator>

using namespace brellin;

namespace {

/// The folder arguments as absolute paths, since a running instance may have a different working folder.
std::vector<Location> foldersOf(int argc, char **argv)
{
    std::vector<Location> folders;
    for (int i = 1; i < argc; ++i) {
        std::error_code error;
        if (const Location folder = std::filesystem::absolute(argv[i], error); !error && argv[i][0] != '-')
            folders.push_back(typedLocation(folder));
    }
    return folders;
}

/// Loads German texts for Qt's own dialogs.
void loadGermanTexts(QApplication &application)
{
    auto *const texts = new QTranslator(&application);
    if (texts->load(QLocale(QLocale::German), QStringLiteral("qtbase"), QStringLiteral("_"),
                    QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(texts);
}

/// No window is left to show a failure in.
void storeSettings(DeferredUserDefaults &settings)
{
    constexpr std::chrono::seconds patience{20}; // four times as long as a write waits for another program's lock
    if (const Result<void> stored = settings.finish(patience); !stored)
        qWarning("Die Einstellung ließ sich nicht speichern: %s", qUtf8Printable(stored.error().message));
}

} // namespace

/// The window program. `brellin` without a command executes it.
int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(Edition::name());
    QApplication::setApplicationDisplayName(Edition::name());
    QGuiApplication::setDesktopFileName(QStringLiteral("brellin"));
    QApplication::setQuitOnLastWindowClosed(false);
    QLocale::setDefault(german());
    loadGermanTexts(application);

    Services services(Services::Writing::OnWorker);
    const std::vector<Location> folders = foldersOf(argc, argv);
    SingleInstance instance(stateFolder(services.folders().home));
    if (instance.begin(folders) == SingleInstance::Role::HandedOver)
        return 0;

    Theme &theme = Theme::install(application);
    DesktopSettings desktop(theme, nullptr);
    applyAppearance(services.settings(), desktop);
    WindowComposition composition(services, desktop);
    Windows windows(composition.forWindows());
    QObject::connect(&instance, &SingleInstance::received, &windows, &Windows::take);
    QObject::connect(&windows, &Windows::lastClosed, &application, &QCoreApplication::quit);
    windows.start(folders);
    composition.start();
    const int code = QApplication::exec();
    storeSettings(services.deferredSettings());
    return Shutdown::end(code);
}
