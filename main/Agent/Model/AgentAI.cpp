#include "Agent/Model/AgentAI.h"

#include "Agent/Model/ModelTexts.h"
#include "Agent/Model/TextBeginning.h"
#include "Base/Graphemes.h"
#include "Disk/FileTypes.h"
#include "Disk/Walk.h"

#include <QRegularExpression>

#include <algorithm>
#include <map>
#include <vector>

namespace brellin {

namespace {

constexpr int mostSnippetCharacters = 1200;
constexpr int mostNameCharacters = 40;
/// Leaves room for a number within the 255 bytes of a file name.
constexpr qsizetype mostNameBytes = 200;
constexpr qsizetype mostFoldersTold = 60;

QString instructions()
{
    return QStringLiteral("Du hilfst, Dateien sauber in Ordner einzusortieren. Antworte ausschließlich mit einem "
                          "kurzen, sinnvollen deutschen Ordnernamen (1 bis 3 Wörter), ohne Anführungszeichen, ohne "
                          "Satzzeichen, ohne Erklärung.");
}

/// A line break in a name must not start a new line of the prompt.
QString onOneLine(QString name)
{
    for (QChar &c : name) {
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
            c = u' ';
    }
    return name;
}

QString promptFor(const Location &file, const QStringList &existing, const QString &snippet)
{
    return QStringList{
        QStringLiteral("Dateiname: ") + onOneLine(shownName(file)),
        QStringLiteral("Vorhandene Ordner: ") + existing.mid(0, mostFoldersTold).join(QStringLiteral(", ")),
        QStringLiteral("Inhalt (Auszug): ") + snippet,
        QStringLiteral("In welchen Ordner gehört diese Datei? Nimm einen vorhandenen Ordner, wenn er passt, sonst "
                       "einen neuen kurzen Namen."),
    }
        .join(u'\n');
}

/// No invisible or unassigned characters.
bool isPlain(const QString &name)
{
    return std::ranges::none_of(name.toUcs4(), [](uint c) {
        const QChar::Category category = QChar::category(c);
        return category == QChar::Other_Control || category == QChar::Other_Format ||
               category == QChar::Other_Surrogate || category == QChar::Other_NotAssigned ||
               category == QChar::Separator_Line || category == QChar::Separator_Paragraph ||
               c == QChar::ReplacementCharacter;
    });
}

QString firstLine(const QString &text)
{
    static const QRegularExpression lineBreak(QStringLiteral("[\n\v\f\r\u0085\u2028\u2029]"));
    return text.left(text.indexOf(lineBreak));
}

QString trimmedOfDecoration(const QString &name)
{
    static const QRegularExpression decoration(QStringLiteral("^[ .\"'„“”`*:]+|[ .\"'„“”`*:]+$"));
    return QString(name).remove(decoration);
}

/// Whether excerpts of this type go into the prompt: plain text, source code and JSON. Other text formats (HTML,
/// tables, vCards) are meant for programs.
bool isQuoted(const FileType &type)
{
    static const QStringList plain{QStringLiteral("text/plain"), QStringLiteral("text/markdown"),
                                   QStringLiteral("text/x-log"), QStringLiteral("text/x-readme"),
                                   QStringLiteral("text/x-changelog")};
    return plain.contains(type.mimeName) || type.conformsTo(TypeTrait::SourceCode) || type.conformsTo(TypeTrait::Json);
}

QString rawText(const Location &file, const PdfText &pdfText, const JobControl *control)
{
    const FileType &type = fileTypeOf(extensionOf(file.filename().native()));
    if (type.conformsTo(TypeTrait::Pdf))
        return pdfText ? pdfText(file, control).value_or(QString()) : QString();
    return isQuoted(type) ? beginningOfText(file) : QString();
}

} // namespace

bool AgentAI::isAvailable(LanguageModel &model)
{
    return model.status() == ModelStatus::Available;
}

QString AgentAI::statusText(LanguageModel &model)
{
    return modelStatusText(model.status());
}

std::optional<QString> AgentAI::folderName(LanguageModel &model, const Location &file, const QStringList &existing,
                                           const PdfText &pdfText, std::chrono::milliseconds limit,
                                           const JobControl *control)
{
    using std::chrono::steady_clock;
    const steady_clock::time_point deadline = steady_clock::now() + limit;
    if (!isAvailable(model))
        return std::nullopt;
    const QString prompt = promptFor(file, existing, textSnippet(file, pdfText, control));
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - steady_clock::now());
    if (left <= std::chrono::milliseconds::zero() || (control && control->cancelled()))
        return std::nullopt;
    const Result<QString> answer = model.respond(instructions(), prompt, left, control);
    return answer ? sanitize(*answer, existing) : std::nullopt;
}

QStringList AgentAI::existingFolders(const Location &base, const JobControl *control)
{
    std::map<std::string, qint64> entriesOf;
    const auto visit = [&](const WalkEntry &entry) {
        if (entry.depth > 0) {
            ++entriesOf[Location(entry.folder).filename().native()];
            return WalkStep::SkipFolder;
        }
        if (!entry.attributes.isFolder())
            return WalkStep::Continue;
        if (entry.package)
            return WalkStep::SkipFolder;
        entriesOf.try_emplace(std::string(entry.name));
        return WalkStep::Continue;
    };
    if (!walk(base, {.hidden = false, .insidePackages = false, .otherVolumes = false}, visit, control))
        return {};
    std::vector<std::pair<std::string, qint64>> folders(entriesOf.begin(), entriesOf.end());
    std::ranges::stable_sort(folders, std::ranges::greater(), &std::pair<std::string, qint64>::second);
    QStringList names;
    for (const auto &[bytes, entries] : folders) {
        const QString name = QString::fromStdString(bytes);
        if (isPlain(name))
            names << name;
    }
    return names;
}

QString AgentAI::textSnippet(const Location &file, const PdfText &pdfText, const JobControl *control)
{
    static const QRegularExpression whiteSpace(QStringLiteral("\\s+"), QRegularExpression::UseUnicodePropertiesOption);
    const QString text = rawText(file, pdfText, control).replace(whiteSpace, QStringLiteral(" "));
    return firstGraphemes(text, mostSnippetCharacters);
}

std::optional<QString> AgentAI::sanitize(const QString &answer, const QStringList &existing)
{
    QString name = trimmedOfDecoration(firstLine(answer));
    name.replace(u'/', u'-').replace(u':', u'-');
    if (name.isEmpty() || endOfGraphemes(name, mostNameCharacters) < name.size())
        return std::nullopt;
    if (!isPlain(name) || name.toUtf8().size() > mostNameBytes)
        return std::nullopt;
    if (existing.contains(name))
        return name;
    const auto same = std::ranges::find(existing, folded(name), [](const QString &folder) { return folded(folder); });
    return same != existing.end() ? *same : name;
}

} // namespace brellin
