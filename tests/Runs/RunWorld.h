#pragma once

#include "Runs/AgentError.h"
#include "Runs/Execution.h"
#include "Runs/Placement.h"
#include "Runs/Recovery.h"
#include "Runs/RunHistory.h"
#include "Runs/RunJournal.h"
#include "Runs/StateFolder.h"
#include "Runs/UndoRun.h"
#include "Support/AgentWorld.h"

#include <gtest/gtest.h>

#include <functional>

#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace brellin::test {

using Kind = AgentProposal::Kind;

inline AgentProposal proposal(Kind kind, const Location &source, std::optional<Location> destination = {})
{
    AgentProposal one;
    one.kind = kind;
    one.source = source;
    one.destination = std::move(destination);
    one.seen = FileState::of(readAttributes(source).value_or(FileAttributes()));
    return one;
}

/// Files for every kind of step: moves onto each other's names, to a taken name and into new folders, a rename, a copy,
/// the Trash, and a file and a folder moved across volumes.
class RunWorld {
public:
    RunWorld()
    {
        world.tree().lines({"home/Downloads/a.pdf=eins", "home/Downloads/tief/a.pdf=zwei",
                            "home/Downloads/alt.zip=drei", "home/Downloads/name.txt=vier",
                            "home/Downloads/kopie.txt=fünf", "home/Downloads/groß.mov=sechs",
                            "home/Downloads/Paket.app/innen/daten=sieben", "home/Downloads/Paket.app/leer/",
                            "home/Archiv/a.pdf=acht", "disk/Ablage/groß.mov=neun"});
        world.tree().age("home/Downloads/a.pdf", Instant(std::chrono::seconds(1'000'000'000)));
        world.tree().age("home/Downloads/groß.mov", Instant(std::chrono::nanoseconds(1'100'000'000'123'456'789)));
        ::setxattr(world.home("Downloads/groß.mov").c_str(), "user.xdg.tags", "Rot", 3, 0);
        before = world.snapshot();
        contents = world.contents();
    }

    std::vector<AgentProposal> everything() const
    {
        const auto from = [&](const char *name) { return world.home("Downloads") / name; };
        return {proposal(Kind::Move, from("a.pdf"), world.home("Archiv/a.pdf")),
                proposal(Kind::Move, from("tief/a.pdf"), world.home("Archiv/a.pdf")),
                proposal(Kind::Trash, from("alt.zip")),
                proposal(Kind::Rename, from("name.txt"), from("2026-09-03 name.txt")),
                proposal(Kind::Copy, from("kopie.txt"), world.home("Neu/Ordner/kopie.txt")),
                proposal(Kind::Move, from("groß.mov"), world.disk("Ablage/groß.mov")),
                proposal(Kind::Move, from("Paket.app"), world.disk("Programme/Paket.app"))};
    }

    Result<ExecutionOutcome> execute(const std::vector<AgentProposal> &proposals)
    {
        JobControl control;
        return Execution(world.services()).execute(proposals, control);
    }

    Result<UndoOutcome> undo(const JournalRun &run)
    {
        JobControl control;
        return UndoRun(world.services()).undo(run.id, control);
    }

    /// Undoes all runs of the history that are not undone.
    void undoAll()
    {
        for (const JournalRun &run : RunHistory(world.defaults()).runs()) {
            if (!run.undone) {
                const Result<UndoOutcome> undone = undo(run);
                ASSERT_TRUE(undone);
                EXPECT_EQ(undone->status(), QStringLiteral("Rückgängig gemacht."));
            }
        }
    }

    void expectEveryByte() const
    {
        const std::set<std::string> now = world.contents();
        for (const std::string &content : contents)
            EXPECT_TRUE(now.contains(content)) << content << " is lost";
    }

    /// Runs `work` in a process that is killed at point `n`; returns whether it finished before.
    bool survives(int n, const std::function<void()> &work)
    {
        const pid_t child = ::fork();
        if (child == 0) {
            world.faults = FaultPlan{};
            world.faults.killAt = n;
            work();
            ::_exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) || WTERMSIG(status) == SIGKILL);
        return WIFEXITED(status);
    }

    AgentWorld world;
    std::string before;
    std::set<std::string> contents;
};

} // namespace brellin::test
