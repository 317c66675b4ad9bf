#include "Agent/Model/AgentAI.h"

#include "Agent/Model/ModelTexts.h"
#include "Disk/FileAttributes.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace brellin;
using namespace brellin::test;
using namespace std::chrono_literals;

namespace {

/// A model with canned answers that records its prompts.
class ScriptedModel : public LanguageModel {
public:
    ModelStatus status() override { return state; }
    Result<QString> respond(const QString &instructionText, const QString &promptText, std::chrono::milliseconds,
                            const JobControl *) override
    {
        ++asked;
        instructions = instructionText;
        prompt = promptText;
        return answer;
    }

    ModelStatus state = ModelStatus::Available;
    Result<QString> answer = QStringLiteral("Verträge");
    int asked = 0;
    QString instructions;
    QString prompt;
};

Result<QString> noPdf(const Location &, const JobControl *)
{
    return failure(QStringLiteral("kein PDF"));
}

QString sanitized(const QString &answer, const QStringList &existing = {})
{
    return AgentAI::sanitize(answer, existing).value_or(QStringLiteral("–"));
}

} // namespace

TEST(AgentAITest, cleansTheAnswer)
{
    const QString forty(40, u'a');
    const QStringList existing{QStringLiteral("Rechnungen"), QStringLiteral("Übersicht"), QStringLiteral("übersicht")};
    const std::vector<std::pair<QString, QString>> rows{
        {QStringLiteral("„Rechnungen“."), QStringLiteral("Rechnungen")},
        {QStringLiteral("“Rechnungen”"), QStringLiteral("Rechnungen")},
        {QStringLiteral("**`'\"Steuer 2024\"'`**:"), QStringLiteral("Steuer 2024")},
        {QStringLiteral("rechnungen"), QStringLiteral("Rechnungen")},
        {QString::fromUtf8("U\u0308BERSICHT"), QStringLiteral("Übersicht")},
        {QStringLiteral("übersicht"), QStringLiteral("übersicht")},
        {QStringLiteral("Verträge\nweil es einer ist"), QStringLiteral("Verträge")},
        {QStringLiteral("Verträge\r\nmehr"), QStringLiteral("Verträge")},
        {QStringLiteral("Haus/Garten: Belege"), QStringLiteral("Haus-Garten- Belege")},
        {QStringLiteral("../../etc"), QStringLiteral("-..-etc")},
        {QStringLiteral("/"), QStringLiteral("-")},
        {forty, forty},
        {QString(QStringLiteral("u\u0308")).repeated(40), QString(QStringLiteral("u\u0308")).repeated(40)},
        {forty + u'a', QStringLiteral("–")},
        {QStringLiteral(" .. "), QStringLiteral("–")},
        {QStringLiteral("\nRechnungen"), QStringLiteral("–")},
        {QStringLiteral("Rech\u001b[2Jnungen"), QStringLiteral("–")},
        {QStringLiteral("Fotos\u202egpj"), QStringLiteral("–")},
        {QString(u'a') + QChar(0xd800), QStringLiteral("–")},
        {QString(u'a') + QString(QChar(0x0301)).repeated(300), QStringLiteral("–")},
    };
    for (const auto &[answer, expected] : rows)
        EXPECT_EQ(sanitized(answer, existing), expected) << answer.toStdString();
}

TEST(AgentAITest, asksWithTheFilesNameFoldersAndText)
{
    const TempTree tree;
    const Location file = tree.file("Vertrag\nneu.txt", "Mietvertrag\n\n  vom \t 1. Mai");
    ScriptedModel model;
    const auto ask = [&](const QStringList &existing) {
        return AgentAI::folderName(model, file, existing, noPdf, 5s, nullptr);
    };
    EXPECT_EQ(ask({QStringLiteral("Wohnung"), QStringLiteral("verträge")}), QStringLiteral("verträge"));
    EXPECT_TRUE(model.instructions.endsWith(QStringLiteral("ohne Satzzeichen, ohne Erklärung.")));
    EXPECT_EQ(model.prompt, QStringLiteral("Dateiname: Vertrag neu.txt\n"
                                           "Vorhandene Ordner: Wohnung, verträge\n"
                                           "Inhalt (Auszug): Mietvertrag vom 1. Mai\n"
                                           "In welchen Ordner gehört diese Datei? Nimm einen vorhandenen Ordner, wenn "
                                           "er passt, sonst einen neuen kurzen Namen."));

    QStringList many;
    for (int i = 1; i <= 61; ++i)
        many << QStringLiteral("Ordner %1").arg(i);
    model.answer = QStringLiteral("ORDNER 61");
    EXPECT_EQ(ask(many), QStringLiteral("Ordner 61")) << "an existing name also beyond those told";
    EXPECT_TRUE(model.prompt.contains(QStringLiteral("Ordner 60\n")));

    model.answer = failure(QStringLiteral("kaputt"));
    EXPECT_EQ(ask({}), std::nullopt);
    EXPECT_EQ(AgentAI::folderName(model, file, {}, noPdf, 0s, nullptr), std::nullopt);
    const int asked = model.asked;
    model.state = ModelStatus::Loading;
    EXPECT_EQ(ask({}), std::nullopt);
    EXPECT_EQ(model.asked, asked);
}

TEST(AgentAITest, excerptsText)
{
    const TempTree tree;
    const std::string umlauts = [] {
        std::string text = "a";
        while (text.size() < 20'000)
            text += "ä";
        return text;
    }();
    struct Row {
        const char *name;
        std::string content;
        QString expected;
    };
    const std::vector<Row> rows{
        {"a.txt", "\xEF\xBB\xBF Eins\r\n\tzwei ", QStringLiteral(" Eins zwei ")},
        {"long.md", umlauts, QString(u'a') + QString(1199, u'ä')},
        {"latin.TXT", "M\xFCller", QStringLiteral("Müller")},
        {"wide.txt",
         std::string("\xFF\xFE"
                     "A\0\xFC\0",
                     6),
         QStringLiteral("Aü")},
        {"data.json", "{\"a\": 1}", QStringLiteral("{\"a\": 1}")},
        {"code.cpp", "int a;\x01 // und noch etwas Text", QStringLiteral("int a; // und noch etwas Text")},
        {"zero.txt", std::string("ab\0cd", 5), {}},
        {"rubbish.txt", "\x01\x02\x90\x91z\x05\x06", {}},
        {"letter.rtf", "{\\rtf1 Hallo}", {}},
        {"drawing.svg", "<svg/>", {}},
        {"page.html", "<p>Hallo", {}},
        {"table.csv", "a;b", {}},
        {"list.xml", "<a/>", {}},
        {"person.vcf", "BEGIN:VCARD", {}},
        {"run.sh", "echo ja", QStringLiteral("echo ja")},
        {"picture.jpg", "text", {}},
        {"noextension", "text", {}},
        {"broken.pdf", "%PDF", {}},
    };
    for (const Row &row : rows)
        EXPECT_EQ(AgentAI::textSnippet(tree.file(row.name, row.content), noPdf), row.expected) << row.name;
    EXPECT_EQ(AgentAI::textSnippet(tree.path("a.pdf"),
                                   [](const Location &, const JobControl *) { return QStringLiteral("Seite\n1"); }),
              QStringLiteral("Seite 1"));
}

TEST(AgentAITest, readsQuietlyAndNeverWaits)
{
    const TempTree tree;
    const Location file = tree.file("a.txt", "Text");
    tree.age("a.txt", std::chrono::sys_days(std::chrono::year(2020) / 1 / 1));
    const Instant accessed = readAttributes(file)->accessed;
    EXPECT_EQ(AgentAI::textSnippet(file, noPdf), QStringLiteral("Text"));
    EXPECT_EQ(readAttributes(file)->accessed, accessed);

    ASSERT_EQ(::mkfifo(tree.path("pipe.txt").c_str(), 0600), 0);
    EXPECT_EQ(AgentAI::textSnippet(tree.path("pipe.txt"), noPdf), QString());
    EXPECT_EQ(AgentAI::textSnippet(tree.link("link.txt", "a.txt"), noPdf), QString());
    EXPECT_EQ(AgentAI::textSnippet(tree.path("missing.txt"), noPdf), QString());
}

TEST(AgentAITest, listsTheFoldersWithTheMostEntriesFirst)
{
    const TempTree tree;
    tree.lines({"Leer/", "Alben/a=", "Voll/a=", "Voll/b/c/d/e=", "Voll/c=", ".hidden/a=", "Fotos.app/a=", "file=",
                "link->Voll", "Zeilen\num/a="});
    EXPECT_EQ(AgentAI::existingFolders(tree.root()),
              QStringList({QStringLiteral("Voll"), QStringLiteral("Alben"), QStringLiteral("Leer")}));
    EXPECT_EQ(AgentAI::existingFolders(tree.path("missing")), QStringList());
}

TEST(AgentAITest, saysWhatTheModelIs)
{
    ScriptedModel model;
    EXPECT_EQ(AgentAI::statusText(model), QStringLiteral("KI ist bereit (läuft auf diesem Rechner, ohne Internet)."));
    model.state = ModelStatus::Unavailable;
    EXPECT_EQ(AgentAI::statusText(model), QStringLiteral("KI nicht verfügbar."));
    for (int status = 0; status <= static_cast<int>(ModelStatus::Unavailable); ++status)
        EXPECT_FALSE(modelStatusText(static_cast<ModelStatus>(status), TextSystem::Linux).contains(u"Mac"));
}
