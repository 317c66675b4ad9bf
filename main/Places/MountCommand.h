#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "Places/MountDialogue.h"
#include "Places/ServerAddress.h"
#include "System/ProcessRunner.h"

#include <string>
#include <utility>
#include <vector>

namespace brellin {

/// Runs the system's program that connects to servers. Blocking: call on workers only.
class MountCommand {
public:
    MountCommand(ProcessRunner &processes, std::string program) : m_processes(processes), m_program(std::move(program))
    {
    }

    /// Connects, passing the server's questions to `ask`, and returns the folder with the server's files. Succeeds if
    /// the server is already connected.
    Result<Location> mount(const ServerAddress &address, const MountDialogue::Ask &ask,
                           const JobControl &control) const;
    Result<void> unmount(const ServerAddress &address, const JobControl &control) const;

private:
    Result<ProcessOutput> run(const std::vector<std::string> &words, const ServerAddress &address,
                              MountDialogue *dialogue, const JobControl &control) const;
    Result<Location> placeOf(const ServerAddress &address, const JobControl &control) const;

    ProcessRunner &m_processes;
    const std::string m_program;
};

} // namespace brellin
