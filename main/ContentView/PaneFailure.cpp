#include "ContentView/PaneFailure.h"

#include <algorithm>

#include <cerrno>

namespace brellin {

namespace {

/// More lines than these are counted, so that the banner leaves room for the list.
constexpr qsizetype mostLines = 3;

bool isOneOf(const Failure &why, std::initializer_list<std::errc> causes)
{
    return std::ranges::any_of(causes, [&](std::errc cause) { return why.is(cause); });
}

bool isFullDisk(const Failure &why)
{
    return isOneOf(why, {std::errc::no_space_on_device}) ||
           why.code == std::error_code(EDQUOT, std::generic_category());
}

bool isRefused(const Failure &why)
{
    return isOneOf(why, {std::errc::permission_denied, std::errc::operation_not_permitted});
}

/// A name that is refused, and an entry that is gone, stay so.
bool mayPass(const Failure &why)
{
    return why.code && !isOneOf(why, {std::errc::file_exists, std::errc::filename_too_long, std::errc::invalid_argument,
                                      std::errc::no_such_file_or_directory});
}

QString shortened(const QStringList &lines)
{
    QStringList shown = lines.mid(0, mostLines);
    if (lines.size() > mostLines)
        shown << QStringLiteral("und %1 weitere").arg(lines.size() - mostLines);
    return shown.join(u'\n');
}

} // namespace

PaneFailure paneFailure(const QString &message, const EntryFailures &failures, const RetryOf &retry)
{
    PaneFailure made{message, shortened(message.split(u'\n')), {}, {}};
    if (failures.size() == 1 && message == failures.front().why.message)
        made.text = failures.front().line();
    const auto why = [](const EntryFailure &one) { return one.why; };
    if (std::ranges::any_of(failures, isFullDisk, why))
        made.remedies.push_back(Remedy::FreeSpace);
    const auto forbidden = std::ranges::find_if(failures, isRefused, why);
    if (forbidden != failures.end() && !forbidden->entry.empty()) {
        made.remedies.push_back(Remedy::ShowRights);
        made.entry = forbidden->entry;
    }
    if (!retry || !std::ranges::any_of(failures, mayPass, why))
        return made;
    std::vector<Location> again;
    for (const EntryFailure &one : failures)
        if (!one.entry.empty() && mayPass(one.why))
            again.push_back(one.entry);
    made.remedies.push_back(Remedy::Retry);
    made.retry = [retry, again] { retry(again); };
    return made;
}

} // namespace brellin
