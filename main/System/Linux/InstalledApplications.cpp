#include "System/Linux/InstalledApplications.h"

#include <QMimeDatabase>

#include <algorithm>
#include <set>

namespace brellin {

namespace {

constexpr QLatin1StringView ending(".desktop");

QString withoutEnding(QString name)
{
    if (name.endsWith(ending))
        name.chop(ending.size());
    return name;
}

/// The preferred applications of the user and the desktop.
struct Preferences {
    std::vector<KeyFile> files; ///< highest precedence first

    std::vector<QString> listed(const QByteArray &group, const QString &type) const
    {
        std::vector<QString> found;
        for (const KeyFile &file : files) {
            const auto keys = file.find(group);
            if (keys == file.end())
                continue;
            if (const auto value = keys->second.find(type.toUtf8()); value != keys->second.end())
                std::ranges::transform(keyFileList(value->second), std::back_inserter(found), withoutEnding);
        }
        return found;
    }
};

/// A MIME type and its parents, nearest first, without application/octet-stream, which matches every file.
QStringList typesAbove(const QString &mimeType)
{
    QStringList types{mimeType};
    const QMimeType known = QMimeDatabase().mimeTypeForName(mimeType);
    if (known.isValid()) {
        types += known.name();
        types += known.allAncestors();
    }
    types.removeDuplicates();
    types.removeAll(QStringLiteral("application/octet-stream"));
    return types;
}

} // namespace

bool InstalledApplications::isUsable(const DesktopEntry &entry) const
{
    return !entry.hidden && (entry.tryProgram.empty() || m_environment.program(entry.tryProgram));
}

/// An identifier is the path below the applications folder with "/" replaced by "-".
std::optional<DesktopEntry> InstalledApplications::find(const QString &identifier) const
{
    const QString path = withoutEnding(identifier);
    // Refuse identifiers that lead out of the applications folders.
    if (path.isEmpty() || path.contains(u'/') || path.contains(QStringLiteral("..")))
        return std::nullopt;
    for (const Location &folder : m_environment.dataFolders) {
        for (QString name = path;;) {
            const Location file = folder / "applications" / (name + ending).toStdString();
            if (std::error_code error; std::filesystem::exists(file, error)) {
                // The first match counts, even if it marks the application as removed.
                const std::optional<DesktopEntry> entry = DesktopEntry::read(file, path);
                return entry && isUsable(*entry) ? entry : std::nullopt;
            }
            const qsizetype dash = name.indexOf(u'-');
            if (dash < 0)
                break;
            name[dash] = u'/';
        }
    }
    return std::nullopt;
}

std::vector<DesktopEntry> InstalledApplications::all() const
{
    namespace fs = std::filesystem;
    std::vector<DesktopEntry> found;
    std::set<QString> known;
    for (const Location &data : m_environment.dataFolders) {
        const Location folder = data / "applications";
        std::vector<Location> files;
        std::error_code error;
        for (fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied, error);
             !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
            if (entry->path().extension() == ".desktop")
                files.push_back(entry->path());
        }
        std::ranges::sort(files);
        for (const Location &file : files) {
            const QString identifier = withoutEnding(shown(file.lexically_relative(folder))).replace(u'/', u'-');
            if (!known.insert(identifier).second)
                continue;
            if (std::optional<DesktopEntry> entry = DesktopEntry::read(file, identifier); entry && isUsable(*entry))
                found.push_back(*std::move(entry));
        }
    }
    return found;
}

std::vector<DesktopEntry> InstalledApplications::offered() const
{
    std::vector<DesktopEntry> entries = all();
    std::erase_if(entries, [](const DesktopEntry &entry) { return !entry.offered || !entry.takesFiles(); });
    std::ranges::sort(entries, [](const DesktopEntry &one, const DesktopEntry &other) {
        return QString::localeAwareCompare(one.name, other.name) < 0;
    });
    return entries;
}

std::vector<Location> InstalledApplications::preferenceFiles() const
{
    std::vector<Location> folders = m_environment.configFolders;
    for (const Location &data : m_environment.dataFolders)
        folders.push_back(data / "applications");
    std::vector<Location> files;
    for (const Location &folder : folders) {
        for (const QString &desktop : m_environment.desktops)
            files.push_back(folder / (desktop + QStringLiteral("-mimeapps.list")).toStdString());
        files.push_back(folder / "mimeapps.list");
    }
    return files;
}

std::vector<DesktopEntry> InstalledApplications::openersOf(const QString &mimeType) const
{
    Preferences preferences;
    for (const Location &file : preferenceFiles())
        preferences.files.push_back(readKeyFile(file));
    const std::vector<DesktopEntry> installed = all();
    std::vector<DesktopEntry> openers;
    std::set<QString> taken;
    for (const QString &type : typesAbove(mimeType)) {
        const std::vector<QString> removed = preferences.listed("Removed Associations", type);
        const auto take = [&](const DesktopEntry &entry) {
            if (taken.insert(entry.identifier).second)
                openers.push_back(entry);
        };
        const auto takeNamed = [&](const char *group) {
            for (const QString &identifier : preferences.listed(group, type)) {
                const auto entry = std::ranges::find(installed, identifier, &DesktopEntry::identifier);
                if (entry != installed.end())
                    take(*entry);
            }
        };
        takeNamed("Default Applications");
        takeNamed("Added Associations");
        for (const DesktopEntry &entry : installed) {
            const bool opens = std::ranges::find(entry.types, type) != entry.types.end();
            if (opens && std::ranges::find(removed, entry.identifier) == removed.end())
                take(entry);
        }
    }
    return openers;
}

} // namespace brellin
