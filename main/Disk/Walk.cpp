#include "Disk/Walk.h"

#include "Disk/WalkBranch.h"

#include <algorithm>
#include <utility>

namespace brellin {

namespace {

constexpr std::size_t openFoldersAtMost = 32;

class Visitor : public WalkSink {
public:
    explicit Visitor(const std::function<WalkStep(const WalkEntry &)> &visit) : m_visit(visit) {}
    WalkStep show(const WalkEntry &entry) override { return m_visit(entry); }

private:
    const std::function<WalkStep(const WalkEntry &)> &m_visit;
};

} // namespace

Location WalkEntry::location() const
{
    return childPath(folder, name);
}

HiddenNames hiddenNamesIn(std::string_view list)
{
    HiddenNames names;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find('\n'), list.size());
        std::string_view line = list.substr(0, end);
        list.remove_prefix(std::min(end + 1, list.size()));
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (!line.empty())
            names.emplace(line);
    }
    return names;
}

Result<WalkOutcome> walk(const Location &folder, const WalkOptions &options,
                         const std::function<WalkStep(const WalkEntry &)> &visit, const JobControl *control)
{
    WalkBranch top = TRY(WalkBranch::top(folder));
    WalkRun run{options, control, top.folder.mount()};
    Visitor visitor(visit);
    BranchWalker walker(run, visitor, openFoldersAtMost);
    TRY(walker.walk(std::move(top)));
    return run.result(walker.outcome());
}

} // namespace brellin
