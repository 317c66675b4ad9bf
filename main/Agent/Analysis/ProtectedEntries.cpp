#include "Agent/Analysis/ProtectedEntries.h"

#include "Agent/Analysis/FolderNames.h"
#include "Agent/Duplicates/SkippedFolders.h"
#include "Agent/Rules/ScriptNames.h"
#include "Disk/Walk.h"
#include "Guard/ProjectDetection.h"

#include <algorithm>
#include <array>

namespace brellin {

namespace {

struct Entry {
    std::string name;
    bool isFolder = false;
    bool isLink = false;
};

struct NamedReason {
    std::string_view name;
    const char16_t *reason;
};

constexpr auto reasonsByName = std::to_array<NamedReason>({{".git", u"Versionsverwaltung (Git)"},
                                                           {".claude", u"Claude-Regeln und Werkzeuge"},
                                                           {"CLAUDE.md", u"Claude-Regeln und Werkzeuge"},
                                                           {".github", u"GitHub-Automatik"},
                                                           {"supabase", u"Server-Funktionen (Supabase)"},
                                                           {".obsidian", u"Obsidian-Einstellungen"}});

std::vector<Entry> entriesOf(const Location &folder, const JobControl *control)
{
    std::vector<Entry> entries;
    const auto collect = [&](const WalkEntry &entry) {
        entries.push_back({std::string(entry.name), entry.attributes.isFolder(), entry.attributes.isLink()});
        return WalkStep::Continue;
    };
    const WalkOptions options{.subfolders = false, .prune = {}};
    if (!walk(folder, options, collect, control))
        return {};
    std::ranges::sort(entries, {}, &Entry::name);
    return entries;
}

/// Folders filled by package managers and build tools.
bool isModuleFolder(const Entry &entry)
{
    constexpr auto more = std::to_array<std::string_view>({"packages", "third_party", "jspm_packages"});
    constexpr auto others = std::to_array<std::string_view>({".svn", ".cache"});
    if (!entry.isFolder && !entry.isLink)
        return false;
    return (isSkippedFolder(entry.name) && std::ranges::find(others, entry.name) == others.end()) ||
           std::ranges::find(more, entry.name) != more.end();
}

/// A folder that development tools treat as one document.
bool isProjectBundle(std::string_view name)
{
    return isProjectMarker(name) || name.ends_with(".xcworkspace");
}

/// Whether a folder contains source code at any depth.
bool holdsCode(const Location &folder, const JobControl *control)
{
    bool found = false;
    const auto look = [&](const WalkEntry &entry) {
        found = entry.attributes.isFile() && isCodeName(entry.name);
        return found ? WalkStep::Stop : WalkStep::Continue;
    };
    const WalkOptions options{.otherVolumes = false, .prune = {}};
    const bool walked = walk(folder, options, look, control).has_value();
    // Protect a folder that cannot be read.
    return found || !walked;
}

/// The scripts of one folder, searched for mentions of its entries.
class FolderScripts {
public:
    FolderScripts(const Location &folder, const std::vector<Entry> &entries)
        : m_scripts(scriptsIn(folder, entries))
        , m_all(m_scripts)
    {
    }

    /// The first script, other than the entry itself, that names the entry.
    QString naming(const Entry &entry) const
    {
        const std::optional<std::size_t> script = m_all.firstOtherMentioningWhole(entry.name);
        return script ? shownName(m_scripts[*script]) : QString();
    }

private:
    static std::vector<Location> scriptsIn(const Location &folder, const std::vector<Entry> &entries)
    {
        std::vector<Location> scripts;
        for (const Entry &entry : entries) {
            if (!entry.isFolder && isReadScriptExtension(lowerExtensionOf(entry.name)))
                scripts.push_back(folder / entry.name);
        }
        return scripts;
    }

    std::vector<Location> m_scripts;
    ScriptNames m_all;
};

/// Why to protect the entry; empty if there is no reason.
QString reasonFor(const Entry &entry, const Location &folder, const FolderScripts &scripts, const JobControl *control)
{
    const auto byName = std::ranges::find(reasonsByName, entry.name, &NamedReason::name);
    if (byName != reasonsByName.end())
        return QString::fromUtf16(byName->reason);
    if (isModuleFolder(entry))
        return QStringLiteral("Programmbausteine");
    if (entry.isFolder && isProject(folder / entry.name))
        return QStringLiteral("Eigenes Software-Projekt");
    if (const QString script = scripts.naming(entry); !script.isEmpty())
        return QStringLiteral("Wird benutzt in ") + script;
    if (entry.isFolder && isNumberedName(entry.name))
        return QStringLiteral("Nummerierter Doku-Bereich");
    const bool isCode = entry.isFolder ? isProjectBundle(entry.name) || holdsCode(folder / entry.name, control)
                                       : isCodeName(entry.name);
    if (isCode)
        return QStringLiteral("Enthält Programmcode");
    if (isDotName(entry.name))
        return QStringLiteral("Versteckte Projektdatei");
    return {};
}

} // namespace

std::vector<ProtectedEntry> detectProtected(const Location &folder, const JobControl *control)
{
    const std::vector<Entry> entries = entriesOf(folder, control);
    const FolderScripts scripts(folder, entries);
    std::vector<ProtectedEntry> found;
    for (const Entry &entry : entries) {
        if (control != nullptr && control->cancelled())
            break;
        const QString reason = reasonFor(entry, folder, scripts, control);
        if (!reason.isEmpty())
            found.push_back({.path = textOf(entry.name), .reason = reason});
    }
    return found;
}

FolderProfile detectedProfile(const Location &folder, const JobControl *control)
{
    FolderProfile profile;
    profile.rootPath = textOf(folder);
    profile.name = shownName(folder);
    profile.protectedEntries = detectProtected(folder, control);
    return profile;
}

} // namespace brellin
