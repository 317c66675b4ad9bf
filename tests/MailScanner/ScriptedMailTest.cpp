#include "MailScanner/ScriptedMail.h"

#include <QDateTime>
#include <gtest/gtest.h>

using namespace brellin;
using namespace std::chrono_literals;

namespace {

/// A script runner that prints what it is told and keeps the scripts.
class ScriptRunner : public ProcessRunner {
public:
    Result<ProcessOutput> run(const ProcessRequest &request, const JobControl *) override
    {
        requests.push_back(request);
        return answer;
    }
    /// The only script that was run.
    QString script() const
    {
        EXPECT_EQ(requests.size(), 1U);
        return requests.empty() ? QString() : scriptOf(requests.front());
    }
    static QString scriptOf(const ProcessRequest &request)
    {
        EXPECT_EQ(request.program, "/usr/bin/osascript");
        EXPECT_EQ(request.arguments.size(), 2U);
        EXPECT_EQ(request.arguments.front(), "-e");
        return QString::fromStdString(request.arguments.back());
    }
    void say(const char *text) { answer = ProcessOutput{0, text, {}}; }

    Result<ProcessOutput> answer = ProcessOutput{};
    std::vector<ProcessRequest> requests;
};

class ScriptedMailTest : public testing::Test {
protected:
    ScriptRunner runner;
    ScriptedMail mail{runner};
    MailSearch usual{30, {}, {u"Bele\"ge"_qs, u"Büro\\Ein"_qs}};
};

Instant local(const QString &text)
{
    return instantFromMilliseconds(QDateTime::fromString(text, Qt::ISODate).toMSecsSinceEpoch());
}

} // namespace

TEST_F(ScriptedMailTest, queriesInboxesAndExtraFoldersWithWholeLists)
{
    runner.say("<1@a>\tRechnung 7\tKontor <r@kontor.de>\t2026-03-01T23:30:00\tINBOX\tZuhause\n"
               "nur\tvier\tFelder\t2026-03-01T09:00:00\n"
               "<2@a>\tOhne Konto\tx\t2026-03-02T00:10:00\tBelege\n"
               "<3@a>\tOhne Datum\tx\tgestern\tBelege\tZuhause\n\n");
    const auto found = mail.messages(usual, nullptr);
    ASSERT_TRUE(found);
    EXPECT_EQ(*found,
              (std::vector<MailMessage>{
                  {u"<1@a>"_qs,
                   u"Rechnung 7"_qs,
                   u"Kontor <r@kontor.de>"_qs,
                   local(u"2026-03-01T23:30:00"_qs),
                   {u"Zuhause"_qs, u"INBOX"_qs}},
                  {u"<2@a>"_qs, u"Ohne Konto"_qs, u"x"_qs, local(u"2026-03-02T00:10:00"_qs), {{}, u"Belege"_qs}}}));
    EXPECT_EQ(runner.requests.front().timeout, 31min);
    EXPECT_EQ(runner.script(), QString::fromUtf8(R"(set cutoff to (current date) - (30 * days)
set out to ""
with timeout of 1800 seconds
tell application "Mail"
    repeat with acc in accounts
    try
        set boxes to (mailboxes of acc whose name is "INBOX" or name is "Posteingang" or name is "Inbox" or name is "Bele\"ge" or name is "Büro\\Ein")
    on error
        set boxes to {}
    end try
    repeat with b in boxes
        try
            set n to count of (messages of b whose date received > cutoff)
if n > 0 then
    set ids to message id of (messages of b whose date received > cutoff)
    set subs to subject of (messages of b whose date received > cutoff)
    set snds to sender of (messages of b whose date received > cutoff)
    set dts to date received of (messages of b whose date received > cutoff)
    repeat with i from 1 to (count of ids)
        set out to out & (item i of ids) & tab & (item i of subs) & tab & (item i of snds) & tab & ((item i of dts) as «class isot» as string) & tab & (name of b) & tab & (name of acc) & linefeed
    end repeat
end if
        end try
    end repeat
end repeat
end tell
end timeout
return out)"));
}

TEST_F(ScriptedMailTest, listsAttachmentsInTheSelectedMailboxes)
{
    runner.say("<1@\"a\">\tRechnung.pdf/AGB.pdf/\n<2@a>\t\n");
    const MailSearch selected{90, QSet<QString>{u"Büro\tEin \"gang\""_qs, u"Zuhause\tINBOX"_qs, u"kaputt"_qs}, {}};
    const auto names = mail.attachments(selected, {u"<1@\"a\">"_qs, u"<2@a>"_qs}, nullptr);
    ASSERT_TRUE(names);
    EXPECT_EQ(names->at(u"<1@\"a\">"_qs), (QStringList{u"Rechnung.pdf"_qs, u"AGB.pdf"_qs}));
    EXPECT_TRUE(names->at(u"<2@a>"_qs).isEmpty());
    EXPECT_EQ(runner.script(), QString::fromUtf8(R"(set cutoff to (current date) - (90 * days)
set wanted to {"<1@\"a\">", "<2@a>"}
set out to ""
with timeout of 1800 seconds
tell application "Mail"
    repeat with pr in {{"Büro", "Ein \"gang\""}, {"Zuhause", "INBOX"}}
    try
        set acc to account (item 1 of pr)
        set b to mailbox (item 2 of pr) of acc
        set ms to (messages of b whose date received > cutoff)
set ids to message id of (messages of b whose date received > cutoff)
repeat with i from 1 to (count of ids)
    if wanted contains (item i of ids) then
        set names to ""
        repeat with a in mail attachments of (item i of ms)
            set names to names & (name of a) & "/"
        end repeat
        set out to out & (item i of ids) & tab & names & linefeed
    end if
end repeat
    end try
end repeat
end tell
end timeout
return out)"));
}

TEST_F(ScriptedMailTest, asksForManyMessagesInPortionsThatFitIntoOneArgument)
{
    QStringList ids;
    for (int i = 0; i < 9000; ++i)
        ids << QStringLiteral("<%1%2@example.org>").arg(i, 6).arg(u"x"_qs.repeated(80));
    ASSERT_TRUE(mail.attachments(usual, ids, nullptr));
    EXPECT_GT(runner.requests.size(), 1U);
    QString all;
    for (const ProcessRequest &request : runner.requests) {
        EXPECT_LT(request.arguments.back().size(), 405'000U);
        all += ScriptRunner::scriptOf(request);
    }
    for (const QString &id : {ids.front(), ids[4500], ids.back()})
        EXPECT_EQ(all.count(id), 1);
    runner.requests.clear();
    ASSERT_TRUE(mail.attachments(usual, {}, nullptr));
    EXPECT_TRUE(runner.requests.empty());
}

TEST_F(ScriptedMailTest, savesAttachmentsWithEveryValueQuoted)
{
    runner.say("ok\n");
    const MailSearch none{90, QSet<QString>{u"A\tB"_qs}, {}};
    EXPECT_EQ(mail.save(none, u"<\"1\"@a>"_qs, {u"Rech\"nung.pdf"_qs, u"b.pdf"_qs}, "/tmp/Ordner \"ä\"", nullptr)
                  .value_or(false),
              true);
    EXPECT_EQ(runner.requests.front().timeout, 5min);
    EXPECT_EQ(runner.script(), QString::fromUtf8(R"(tell application "Mail"
    repeat with pr in {{"A", "B"}}
    try
        set acc to account (item 1 of pr)
        set b to mailbox (item 2 of pr) of acc
        set ms to (messages of b whose message id is "<\"1\"@a>")
repeat with m in ms
    repeat with a in mail attachments of m
        set n to name of a
        if {"Rech\"nung.pdf", "b.pdf"} contains n then
            save a in POSIX file ("/tmp/Ordner \"ä\"/" & n)
        end if
    end repeat
    return "ok"
end repeat
    end try
end repeat
end tell
return "nicht gefunden")"));
}

TEST_F(ScriptedMailTest, movesAMessageIntoAnArchiveThatIsCreatedIfMissing)
{
    runner.say("ok");
    const MailSearch none{90, QSet<QString>{u"A\tB"_qs}, {}};
    EXPECT_EQ(mail.move(none, u"<1@a>"_qs, u"Belege \"abgelegt\""_qs, nullptr).value_or(false), true);
    EXPECT_EQ(runner.script(), QString::fromUtf8(R"(tell application "Mail"
    repeat with pr in {{"A", "B"}}
    try
        set acc to account (item 1 of pr)
        set b to mailbox (item 2 of pr) of acc
        set ms to (messages of b whose message id is "<1@a>")
if (count of ms) > 0 then
    if not (exists mailbox "Belege \"abgelegt\"" of acc) then make new mailbox with properties {name:"Belege \"abgelegt\""} at acc
    move (item 1 of ms) to mailbox "Belege \"abgelegt\"" of acc
    return "ok"
end if
    end try
end repeat
end tell
return "nicht gefunden")"));
    runner.say("nicht gefunden\n");
    EXPECT_EQ(mail.move(none, u"<1@a>"_qs, u"Archiv"_qs, nullptr).value_or(true), false);
}

TEST_F(ScriptedMailTest, listsMailboxesByAccountWithInboxesFirst)
{
    runner.say("Zuhause\tOrdner 10\nZuhause\tordner "
               "9\nBüro\tZ\nZuhause\tINBOX\nkaputt\nzu\tviele\tFelder\nBüro\tPosteingang\n");
    const auto boxes = mail.mailboxes(nullptr);
    ASSERT_TRUE(boxes);
    EXPECT_EQ(*boxes, (std::vector<MailBoxRef>{{u"Zuhause"_qs, u"INBOX"_qs},
                                               {u"Zuhause"_qs, u"ordner 9"_qs},
                                               {u"Zuhause"_qs, u"Ordner 10"_qs},
                                               {u"Büro"_qs, u"Posteingang"_qs},
                                               {u"Büro"_qs, u"Z"_qs}}));
    EXPECT_EQ(runner.requests.front().timeout, 3min);
    EXPECT_EQ(runner.script(), QString::fromUtf8(R"(set out to ""
with timeout of 120 seconds
tell application "Mail"
    repeat with acc in accounts
        if enabled of acc then
            try
                set nms to name of mailboxes of acc
                repeat with nm in nms
                    set out to out & (name of acc) & tab & nm & linefeed
                end repeat
            end try
        end if
    end repeat
end tell
end timeout
return out)"));
}

TEST_F(ScriptedMailTest, failsWithTheScriptsOwnErrorText)
{
    runner.answer =
        ProcessOutput{1, "<1@a>\tRechnung\tx\t2026-03-01T23:30:00\tINBOX\tA\n", "Keine Erlaubnis (-1743)\n"};
    const auto found = mail.messages(usual, nullptr);
    ASSERT_FALSE(found);
    EXPECT_EQ(found.error().message, u"Keine Erlaubnis (-1743)\n"_qs);
}
