#pragma once

#include "Agent/Analysis/FolderAnalysis.h"
#include "Support/AgentWorld.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

namespace brellin::test {

/// Analyses folders of a small account and returns the proposals as lines.
class FolderAnalysisTest : public ::testing::Test {
protected:
    /// Birth times cannot be set, so the analysis uses a later "now" instead.
    FolderAnalysisTest() { daysLater(20); }

    void daysLater(int days) { request.now = SystemClock().now() + std::chrono::days(days); }
    const TempTree &tree() const { return world.tree(); }

    /// Makes sure that entries created next have later birth times: file systems use a coarse clock.
    void waitForNewBirths() const
    {
        const auto birth = [&](const char *file) { return readAttributes(tree().file(file)).value().created; };
        const auto first = birth("uhr/0");
        while (first && birth("uhr/1") == first)
            std::filesystem::remove(tree().path("uhr/1"));
    }

    /// Sets the access time as if the file had been read this many days before the analysis.
    void opened(std::string_view file, int days) const
    {
        const Instant when = request.now - std::chrono::days(days);
        const timespec times[2] = {{std::chrono::floor<std::chrono::seconds>(when).time_since_epoch().count(), 0},
                                   {0, UTIME_OMIT}};
        ASSERT_EQ(::utimensat(AT_FDCWD, tree().path(file).c_str(), times, 0), 0);
    }

    FolderProfile profile(std::string_view root, std::initializer_list<const char16_t *> guarded = {})
    {
        FolderProfile made;
        made.rootPath = textOf(tree().path(root));
        made.tidyAllowed = true;
        for (const char16_t *const path : guarded)
            made.protectedEntries.push_back({.path = QString::fromUtf16(path), .reason = {}});
        return made;
    }

    const AnalysisFindings &analyse(std::string_view folder = "home/X")
    {
        request.folder = tree().path(folder);
        JobControl control;
        findings = analyze(world.services().forAnalysis(), request, control).value();
        return findings;
    }

    /// One line "+ move a -> b" per proposal: "+" ticked, "-" not ticked, "?" needs review, "!" ticked although it
    /// needs review; a folder ends with "/", "=" precedes the kept copy.
    std::vector<std::string> lines() const
    {
        std::vector<std::string> all;
        for (const AgentProposal &one : findings.proposals) {
            std::string line = one.needsReview ? (one.preselected ? "!" : "?") : (one.preselected ? "+" : "-");
            line += one.kind == AgentProposal::Kind::Move ? " move " : " trash ";
            line += below(one.source) + (one.isFolder ? "/" : "");
            if (one.destination)
                line += " -> " + below(*one.destination);
            if (one.keptCopy)
                line += " = " + below(*one.keptCopy);
            all.push_back(line);
        }
        return all;
    }
    std::vector<std::string> linesOf(std::string_view folder = "home/X")
    {
        analyse(folder);
        return lines();
    }

    std::string reason(std::string_view source) const
    {
        for (const AgentProposal &one : findings.proposals) {
            if (below(one.source) == source)
                return one.reason.toStdString();
        }
        return "no proposal";
    }

    std::string below(const Location &location) const { return location.lexically_relative(request.folder).native(); }

    AgentWorld world;
    AnalysisRequest request;
    AnalysisFindings findings;
};

} // namespace brellin::test
