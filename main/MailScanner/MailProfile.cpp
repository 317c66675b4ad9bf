#include "MailScanner/MailProfile.h"

#include "System/ReadWhole.h"

#include <QRegularExpression>

#include <algorithm>
#include <map>

namespace brellin {

namespace {

/// More than any profile's settings have.
constexpr qint64 mostBytes = 20'000'000;

QString textOfFile(const Location &file)
{
    const auto content = readWhole(file, mostBytes);
    return content ? QString::fromUtf8(*content) : QString();
}

/// A string of the file's script language without its escapes.
QString unescaped(QString text)
{
    return text.replace(QLatin1StringView("\\\""), QLatin1StringView("\""))
        .replace(QLatin1StringView("\\\\"), QLatin1StringView("\\"));
}

Location pathFrom(const QString &text)
{
    return Location(text.toStdString());
}

using Server = std::map<QString, QString>;

/// The settings "mail.server.serverN.…" by N.
std::map<QString, Server> serversIn(const QString &prefs)
{
    static const QRegularExpression setting(
        QStringLiteral(R"re(^\s*user_pref\("mail\.server\.server(\d+)\.([\w-]+)",\s*"((?:[^"\\]|\\.)*)"\);)re"),
        QRegularExpression::MultilineOption);
    std::map<QString, Server> servers;
    for (auto found = setting.globalMatch(prefs); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        servers[match.captured(1)][match.captured(2)] = unescaped(match.captured(3));
    }
    return servers;
}

/// The folder relative to the profile is preferred: the absolute one is wrong after the profile has moved.
Location folderOf(const Server &server, const Location &profile)
{
    const QLatin1StringView inProfile("[ProfD]");
    const auto relative = server.find(QStringLiteral("directory-rel"));
    if (relative != server.end() && relative->second.startsWith(inProfile))
        return standardised(profile / pathFrom(relative->second.sliced(inProfile.size())));
    const auto absolute = server.find(QStringLiteral("directory"));
    return absolute == server.end() ? Location() : standardised(pathFrom(absolute->second));
}

} // namespace

std::vector<Location> profilesIn(const Location &root)
{
    static const QRegularExpression path(QStringLiteral("^Path=(.+?)\\s*$"), QRegularExpression::MultilineOption);
    std::vector<Location> profiles;
    const QString ini = textOfFile(root / "profiles.ini");
    for (auto found = path.globalMatch(ini); found.hasNext();) {
        // An absolute path replaces the root.
        const Location profile = standardised(root / pathFrom(found.next().captured(1)));
        std::error_code error;
        if (std::filesystem::is_directory(profile, error))
            profiles.push_back(profile);
    }
    std::ranges::sort(profiles);
    const auto twice = std::ranges::unique(profiles);
    profiles.erase(twice.begin(), twice.end());
    return profiles;
}

std::vector<ProfileAccount> accountsOf(const Location &profile)
{
    std::vector<ProfileAccount> accounts;
    for (const auto &[number, server] : serversIn(textOfFile(profile / "prefs.js"))) {
        const auto type = server.find(QStringLiteral("type"));
        const Location folder = folderOf(server, profile);
        if (type == server.end() || type->second == u"nntp" || type->second == u"rss" || folder.empty())
            continue;
        const auto name = server.find(QStringLiteral("name"));
        accounts.push_back({name == server.end() ? shownName(folder) : name->second, folder});
    }
    std::ranges::sort(accounts, {}, [](const ProfileAccount &one) { return std::pair(one.name, one.folder); });
    return accounts;
}

} // namespace brellin
