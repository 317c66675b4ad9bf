#include "FileOperations/NewEntries.h"

#include "Base/Descriptor.h"
#include "Disk/FreeName.h"
#include "FileOperations/HiddenWork.h"

#include <functional>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

namespace {

constexpr std::string_view documentName = "Neues Textdokument.txt";
constexpr std::string_view aliasEnd = " – Verknüpfung";
/// Limits retries when other programs keep taking the free name first.
constexpr int mostAttempts = 100;

/// `create` returns 0, or -1 with errno set.
Result<Location> createUnique(const Location &wanted, const std::function<int(const Location &)> &create)
{
    for (int attempt = 1;; ++attempt) {
        Location free = unique(wanted);
        if (create(free) == 0)
            return free;
        if (errno != EEXIST || attempt == mostAttempts)
            return failure(Failure::lastSystem());
    }
}

int createEmpty(const Location &file)
{
    Descriptor created(::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                              S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH));
    return created.isOpen() && created.close() ? 0 : -1;
}

/// Shortens a long name before the ending, which marks aliases.
Location aliasOf(const Location &source, const Location &folder)
{
    constexpr std::size_t roomForNumber = 8;
    const std::string name = fittingName(source.filename().native(), 255 - aliasEnd.size() - roomForNumber);
    return folder / (name + std::string(aliasEnd));
}

} // namespace

Result<Location> createTextDocument(const Location &folder)
{
    return createUnique(folder / documentName, createEmpty);
}

Result<Location> createFromTemplate(const Location &model, const Location &folder, FileActions &files,
                                    const Location &logs, const JobControl &control, QStringList &notes)
{
    const auto copyHidden = [&](const HiddenFolder &hidden) -> Result<Location> {
        const Location copy = hidden.location() / model.filename();
        CopyOptions options;
        options.control = &control;
        TRY(files.copy(model, copy, options));
        TRY(files.flush(copy));
        return hidden.moveOut(copy, folder / model.filename());
    };
    return workHidden(folder, packingPrefix, files, logs, copyHidden, notes);
}

OperationOutcome makeAliases(const std::vector<Location> &sources, const Location &folder)
{
    OperationOutcome outcome{{UserAction::Kind::Alias, {}}, {}, false};
    for (const Location &source : sources) {
        // Fail for a missing source: its alias would look broken from the start.
        const Result<FileAttributes> there = readAttributes(source);
        const Result<Location> made =
            there ? createUnique(aliasOf(source, folder),
                                 [&](const Location &free) { return ::symlink(source.c_str(), free.c_str()); })
                  : failure(there.error());
        if (made)
            outcome.action.entries.push_back(recordOf(source, *made));
        else
            outcome.failures << EntryFailure{source, made.error()};
    }
    return outcome;
}

} // namespace brellin
