#include "System/SystemWorkspace.h"

#include "System/AtomicWrite.h"
#include "System/Linux/InstalledApplications.h"
#include "System/Linux/MimeAppsList.h"
#include "System/Linux/ProgramStart.h"
#include "System/PlainSetting.h"
#include "System/ReadWhole.h"

#include <QProcess>
#include <QUrl>

#include <algorithm>
#include <cstdlib>

#include <unistd.h>

namespace brellin {

namespace {

/// A failing start is noticed within this time.
constexpr std::chrono::milliseconds patience{1500};

std::vector<Location> foldersIn(const char *variable, const char *fallback)
{
    const char *const set = std::getenv(variable);
    const QByteArray text(set != nullptr && *set != '\0' ? set : fallback);
    std::vector<Location> folders;
    for (const QByteArray &part : text.split(':')) {
        if (const Location folder = part.toStdString(); folder.is_absolute())
            folders.push_back(folder);
    }
    return folders;
}

/// Base folders: the user's own, then the system's.
std::vector<Location> baseFolders(const char *own, const Location &ownFallback, const char *rest,
                                  const char *restFallback)
{
    std::vector<Location> folders = foldersIn(own, ownFallback.c_str());
    std::ranges::copy(foldersIn(rest, restFallback), std::back_inserter(folders));
    return folders;
}

QString urlOf(const Location &entry)
{
    const std::string &bytes = entry.native();
    return QStringLiteral("file://") +
           QString::fromLatin1(QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())).toPercentEncoding("/"));
}

Failure notInstalled()
{
    return {QStringLiteral("Dieses Programm ist nicht installiert."), {}};
}

/// Starts a program; a non-zero exit code is a failure with this text.
Result<void> start(const std::vector<std::string> &words, const Location &folder, const QString &failed)
{
    if (TRY(startProgram(words, folder, patience)) != 0)
        return failure(failed);
    return {};
}

std::vector<Application> applicationsOf(const std::vector<DesktopEntry> &entries)
{
    std::vector<Application> applications;
    for (const DesktopEntry &entry : entries)
        applications.push_back({entry.identifier, entry.name, entry.icon});
    return applications;
}

const QString cannotStart = QStringLiteral("Das Programm lässt sich nicht starten.");

} // namespace

DesktopEnvironment DesktopEnvironment::ofThisUser(const Location &home)
{
    DesktopEnvironment made;
    made.dataFolders =
        baseFolders("XDG_DATA_HOME", home / ".local/share", "XDG_DATA_DIRS", "/usr/local/share:/usr/share");
    made.configFolders = baseFolders("XDG_CONFIG_HOME", home / ".config", "XDG_CONFIG_DIRS", "/etc/xdg");
    made.programFolders = foldersIn("PATH", "/usr/local/bin:/usr/bin:/bin");
    const QString desktops = QString::fromLocal8Bit(qgetenv("XDG_CURRENT_DESKTOP")).toLower();
    for (const QString &desktop : desktops.split(u':', Qt::SkipEmptyParts))
        made.desktops.push_back(desktop);
    made.terminal = qgetenv("TERMINAL").toStdString();
    return made;
}

std::optional<Location> DesktopEnvironment::program(const std::string &name) const
{
    const auto canRun = [](const Location &file) {
        std::error_code error;
        return std::filesystem::is_regular_file(file, error) && ::access(file.c_str(), X_OK) == 0;
    };
    if (name.find('/') != std::string::npos)
        return canRun(name) ? std::optional(Location(name)) : std::nullopt;
    for (const Location &folder : programFolders) {
        if (!name.empty() && canRun(folder / name))
            return folder / name;
    }
    return std::nullopt;
}

SystemWorkspace::SystemWorkspace(const UserDefaults &defaults, DesktopEnvironment environment, ShowItems showItems)
    : m_defaults(defaults)
    , m_environment(std::move(environment))
    , m_showItems(std::move(showItems))
{
}

bool SystemWorkspace::hasApplication(const QString &identifier) const
{
    return InstalledApplications(m_environment).find(identifier).has_value();
}

Result<void> SystemWorkspace::openApplication(const QString &identifier)
{
    return openWith({}, identifier);
}

Result<void> SystemWorkspace::openWith(const std::vector<Location> &entries, const QString &identifier)
{
    const std::optional<DesktopEntry> application = InstalledApplications(m_environment).find(identifier);
    if (!application)
        return failure(notInstalled());
    // Prefer gio: it supports D-Bus activation and startup notification.
    if (const std::optional<Location> gio = m_environment.program("gio")) {
        std::vector<std::string> words{*gio, "launch", application->file};
        std::ranges::transform(entries, std::back_inserter(words), [](const Location &one) { return one.native(); });
        return start(words, {}, cannotStart);
    }
    const std::vector<std::vector<std::string>> lines = application->commandLines(entries);
    if (lines.empty())
        return failure(cannotStart);
    for (std::vector<std::string> words : lines) {
        const std::optional<Location> program = m_environment.program(words.front());
        if (!program)
            return failure(notInstalled());
        words.front() = *program;
        if (application->inTerminal) {
            std::optional<std::vector<std::string>> terminal = terminalCommand();
            if (!terminal)
                return failure(cannotStart);
            terminal->emplace_back("-e");
            words.insert(words.begin(), terminal->begin(), terminal->end());
        }
        TRY(start(words, {}, cannotStart));
    }
    return {};
}

Result<void> SystemWorkspace::open(const Location &entry)
{
    const QString nobody = QStringLiteral("Dafür ist kein Programm eingerichtet.");
    if (const std::optional<Location> gio = m_environment.program("gio"))
        return start({*gio, "open", entry.native()}, {}, nobody);
    if (const std::optional<Location> opener = m_environment.program("xdg-open"))
        return start({*opener, entry.native()}, {}, nobody);
    return failure(QStringLiteral("Zum Öffnen fehlt auf diesem Rechner das Programm „gio“ oder „xdg-open“."));
}

Result<void> SystemWorkspace::reveal(const Location &entry)
{
    if (m_showItems && m_showItems({urlOf(entry)}))
        return {};
    if (const std::optional<Location> opener = m_environment.program("xdg-open"))
        return start({*opener, entry.parent_path().native()}, {}, cannotStart);
    return open(entry.parent_path());
}

std::vector<Application> SystemWorkspace::applicationsFor(const QString &mimeType) const
{
    return applicationsOf(InstalledApplications(m_environment).openersOf(mimeType));
}

std::vector<Application> SystemWorkspace::offeredApplications() const
{
    return applicationsOf(InstalledApplications(m_environment).offered());
}

/// Written to the user's general list. A list of the desktop's own that says otherwise has precedence.
Result<void> SystemWorkspace::setDefaultApplication(const QString &mimeType, const QString &identifier)
{
    if (m_environment.configFolders.empty())
        return failure(QStringLiteral("Es gibt keinen Ordner für Einstellungen."));
    const Location file = m_environment.configFolders.front() / "mimeapps.list";
    Result<QByteArray> list = readWhole(file);
    if (!list && !list.error().is(std::errc::no_such_file_or_directory))
        return failure(list.error());
    if (std::error_code error; !std::filesystem::create_directories(file.parent_path(), error) && error)
        return failure(Failure::system(error.value()));
    TRY(writeAtomically(file, withDefaultApplication(list.value_or(QByteArray()), mimeType, identifier)));
    const std::vector<DesktopEntry> openers = InstalledApplications(m_environment).openersOf(mimeType);
    if (openers.empty() || openers.front().identifier != identifier)
        return failure(QStringLiteral("Die Arbeitsumgebung hat für diese Art ein anderes Programm festgelegt."));
    return {};
}

/// The user's terminal command, the program's path first.
std::optional<std::vector<std::string>> SystemWorkspace::terminalCommand() const
{
    const QString own = plainSetting(m_defaults, QStringLiteral("terminal"), QString());
    for (const QString &command : {own, QString::fromStdString(m_environment.terminal),
                                   QStringLiteral("xdg-terminal-exec"), QStringLiteral("x-terminal-emulator")}) {
        const QStringList words = QProcess::splitCommand(command);
        const std::optional<Location> program =
            words.isEmpty() ? std::nullopt : m_environment.program(words.front().toStdString());
        if (!program)
            continue;
        std::vector<std::string> line{program->native()};
        std::transform(words.begin() + 1, words.end(), std::back_inserter(line),
                       [](const QString &word) { return word.toStdString(); });
        return line;
    }
    return std::nullopt;
}

Result<void> SystemWorkspace::openTerminal(const Location &folder)
{
    const std::optional<std::vector<std::string>> command = terminalCommand();
    if (!command)
        return failure(QStringLiteral("Kein Terminal gefunden. In den Einstellungen lässt sich eines angeben."));
    return start(*command, folder, QStringLiteral("Das Terminal lässt sich nicht starten."));
}

} // namespace brellin
