#include "Agent/ReviewReport.h"

#include "Agent/HandOverTexts.h"
#include "Base/Edition.h"
#include "Base/German.h"
#include "Disk/FreeName.h"
#include "Guard/ProtectedPlaces.h"
#include "System/AtomicWrite.h"

#include <QDateTime>

#include <algorithm>

namespace brellin {

using Kind = AgentProposal::Kind;

namespace {

const QString assistant = QStringLiteral("com.anthropic.claudefordesktop");

/// A line break would end the list item.
QString withoutLineBreaks(QString text)
{
    return text.replace(u'\n', QChar(0x2424)).replace(u'\r', QChar(0x240D));
}

/// A sentence that may contain names: escapes backquotes, which would start code.
QString plain(const QString &text)
{
    return withoutLineBreaks(text).replace(u'`', QStringLiteral("\\`"));
}

/// Text as inline code, fenced with more backquotes than occur inside.
QString code(QString text)
{
    text = withoutLineBreaks(std::move(text));
    qsizetype longest = 0;
    qsizetype run = 0;
    for (const QChar c : text) {
        run = c == u'`' ? run + 1 : 0;
        longest = std::max(longest, run);
    }
    const QString fence(longest + 1, u'`');
    const QString pad = longest > 0 ? QStringLiteral(" ") : QString();
    return fence + pad + text + pad + fence;
}

QString code(const Location &location)
{
    return code(shown(location));
}

QString actionText(const AgentProposal &proposal)
{
    const Location destination = proposal.destination.value_or(Location());
    switch (proposal.kind) {
    case Kind::Move:
        return QStringLiteral("verschieben → ") + code(destination);
    case Kind::Copy:
        return QStringLiteral("kopieren → ") + code(destination);
    case Kind::Rename:
        return QStringLiteral("umbenennen → ") + code(shownName(destination));
    case Kind::Trash:
        return QStringLiteral("Papierkorb");
    }
    return {};
}

QString proposalLine(const AgentProposal &proposal)
{
    return QStringLiteral("- ") + code(proposal.source) + QStringLiteral(" – ") + actionText(proposal) +
           QStringLiteral(" – ") + (proposal.needsReview ? QStringLiteral("⚠️ ") : QString()) + plain(proposal.reason) +
           u'\n';
}

/// The profile of the project that contains the folder, or the symlink through which it is reached.
std::optional<FolderProfile> profileOf(const ReviewSubject &subject)
{
    if (!subject.folder)
        return std::nullopt;
    const ProtectedPlaces places(subject.profiles);
    std::optional<FolderProfile> profile = places.profileOf(*subject.folder);
    Location above = standardised(*subject.folder);
    while (!profile && above.has_relative_path()) {
        above = above.parent_path();
        profile = places.profileOf(above);
    }
    return profile;
}

std::vector<Location> foldersOf(const ReviewSubject &subject)
{
    return subject.folder ? std::vector{*subject.folder} : subject.sourceFolders;
}

QString joined(const std::vector<Location> &folders, QString (*text)(const Location &), const QString &between)
{
    QStringList parts;
    std::ranges::transform(folders, std::back_inserter(parts), text);
    return parts.join(between);
}

QString requestText(const ReviewSubject &subject, const Location &report)
{
    const QString folders = joined(
        foldersOf(subject), [](const Location &one) { return withoutLineBreaks(shown(one)); }, QStringLiteral("“, „"));
    return QStringLiteral("Bitte prüfe die Aufräum-Vorschläge meines %1-Agenten in „").arg(Edition::name()) +
           withoutLineBreaks(shown(report)) +
           QStringLiteral("“. Lies dazu die betroffenen Ordner und vor allem alle Skripte (.py, .command, .sh) im "
                          "Ordner „") +
           folders +
           QStringLiteral("“: Würde eines der Verschiebungen oder Löschungen etwas kaputt machen (Deploy, Skripte, "
                          "Skills, Pfade)? Sag mir pro Vorschlag: OK oder NICHT – mit Grund. Noch nichts verändern.");
}

std::string fileNameOf(const ReviewSubject &subject, Instant now)
{
    const auto time = std::chrono::floor<std::chrono::milliseconds>(now).time_since_epoch().count();
    const QString stamp = QDateTime::fromMSecsSinceEpoch(time).toString(QStringLiteral("yyyy-MM-dd-HHmm"));
    std::string name = "Vorschlaege";
    if (subject.folder)
        name = standardised(*subject.folder).filename().native();
    return fittingName("Pruefung-" + name + "-" + stamp.toStdString() + ".md");
}

} // namespace

QString reviewText(const ReviewSubject &subject)
{
    QString text = QStringLiteral("# Aufräum-Prüfung\n\n**Ordner:** ") +
                   joined(
                       foldersOf(subject), [](const Location &one) { return code(one); }, QStringLiteral(", ")) +
                   QStringLiteral("\n\n## Vorschläge des Agenten (%1)\n\n").arg(subject.proposals.size());
    for (const AgentProposal &proposal : subject.proposals)
        text += proposalLine(proposal);
    if (const std::optional<FolderProfile> profile = profileOf(subject)) {
        text += QStringLiteral("\n## Geschützt (Profil „%1“)\n\n").arg(plain(profile->name));
        for (const ProtectedEntry &entry : profile->protectedEntries)
            text += QStringLiteral("- ") + code(entry.path) + QStringLiteral(" – ") + plain(entry.reason) + u'\n';
    }
    return text;
}

Result<ReviewReport> writeReviewReport(const ReviewSubject &subject, const Location &documents, Instant now)
{
    const Location folder = documents / QStringLiteral("Brellin-Prüfungen").toStdString();
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        return failure(Failure::system(error.value()));
    const Location file = unique(folder / fileNameOf(subject, now));
    TRY(writeAtomically(file, reviewText(subject).toUtf8()));
    return ReviewReport{file, requestText(subject, file)};
}

QString handOver(const ReviewReport &report, Workspace &workspace)
{
    if (workspace.hasApplication(assistant) && workspace.openApplication(assistant))
        return handOverTexts::opened();
    // The report exists even if the file manager does not respond.
    (void)workspace.reveal(report.file);
    return QStringLiteral("Prüfbericht gespeichert (Dokumente › Brellin-Prüfungen). Anfrage liegt in der "
                          "Zwischenablage.");
}

} // namespace brellin
