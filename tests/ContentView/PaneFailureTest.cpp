#include "ContentView/PaneFailure.h"

#include <gtest/gtest.h>

#include <cerrno>

using namespace brellin;

TEST(PaneFailureTest, offersWhatHelpsAgainstTheCause)
{
    std::vector<Location> tried;
    const RetryOf retry = [&](const std::vector<Location> &failed) { tried = failed; };
    const EntryFailures failures{{"/d/voll.iso", Failure::system(ENOSPC)},
                                 {"/d/fremd.txt", Failure::system(EACCES)},
                                 {"/d/weg.txt", Failure::system(ENOENT)},
                                 {"/d/system", {QStringLiteral("Orte des Systems werden nicht verändert."), {}}}};
    const QString message = linesOf(failures).join(u'\n');
    const PaneFailure made = paneFailure(message, failures, retry);
    EXPECT_EQ(made.message, message);
    EXPECT_TRUE(made.text.startsWith(QStringLiteral("voll.iso: "))) << made.text.toStdString();
    EXPECT_TRUE(made.text.endsWith(QStringLiteral("und 1 weitere")));
    EXPECT_EQ(made.remedies, (std::vector{Remedy::FreeSpace, Remedy::ShowRights, Remedy::Retry}));
    EXPECT_EQ(made.entry, "/d/fremd.txt");
    made.retry();
    EXPECT_EQ(tried, (std::vector<Location>{"/d/voll.iso", "/d/fremd.txt"})) << "what may succeed";

    // Nothing helps against a name that is taken, and a refusal for good.
    for (const EntryFailure &one : {EntryFailure{"/d/a", Failure::system(EEXIST)}, failures[2], failures[3]})
        EXPECT_TRUE(paneFailure(one.why.message, {one}, retry).remedies.empty());
    const EntryFailure taken{"/d/a.txt", Failure::system(EEXIST)};
    EXPECT_EQ(paneFailure(taken.why.message, {taken}).text, taken.line()) << "the entry is named";
    EXPECT_TRUE(paneFailure(message, failures).retry == nullptr);
}
