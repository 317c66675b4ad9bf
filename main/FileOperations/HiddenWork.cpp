#include "FileOperations/HiddenWork.h"

namespace brellin {

Result<Location> workHidden(const Location &parent, std::string_view prefix, FileActions &files, const Location &logs,
                            const std::function<Result<Location>(const HiddenFolder &hidden)> &work, QStringList &notes)
{
    HiddenFolder hidden = TRY(HiddenFolder::create(parent, prefix, files, logs));
    Result<Location> done = work(hidden);
    const std::optional<QString> stays = hidden.remove();
    if (!stays)
        return done;
    if (!done)
        return failure(Failure{done.error().message + u' ' + *stays, done.error().code});
    notes << *stays;
    return done;
}

} // namespace brellin
