#include "Transfers/AwaitedFlush.h"

#include "Base/OpenWork.h"

#include <future>
#include <system_error>
#include <thread>

namespace brellin {

namespace {

constexpr auto look = std::chrono::milliseconds(50);
/// Most flushes end within this time, so that files already copied are completed after a cancel.
constexpr auto patienceWhenCancelled = std::chrono::seconds(1);

Failure notAwaited()
{
    return {QStringLiteral("Ob der Datenträger alles geschrieben hat, ist nicht bekannt; das Warten darauf wurde "
                           "abgebrochen."),
            std::make_error_code(std::errc::operation_canceled)};
}

} // namespace

Result<void> awaitFlush(FileActions &files, const std::shared_ptr<const WrittenVolume> &volume,
                        const TransferState &state)
{
    const auto done = std::make_shared<std::promise<Result<void>>>();
    std::future<Result<void>> flushed = done->get_future();
    try {
        std::thread([open = OpenWork::begin(), done, volume, &files] {
            done->set_value(files.flushVolume(*volume));
        }).detach();
    } catch (const std::system_error &) {
        return files.flushVolume(*volume); // no thread available: block without a limit
    }
    auto patience = std::chrono::duration_cast<std::chrono::milliseconds>(patienceWhenCancelled);
    while (flushed.wait_for(look) != std::future_status::ready) {
        if (!state.cancelled())
            continue;
        patience -= look;
        if (patience <= patience.zero())
            return failure(notAwaited());
    }
    return flushed.get();
}

} // namespace brellin
