#pragma once

#include "System/DecoderProcess.h"
#include "System/ProcessRunner.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

namespace brellin {

/// The port to whoever decodes pictures, documents and archives. Blocking, callable from several threads: called on
/// workers only.
class Decoder {
public:
    virtual ~Decoder() = default;

    /// The answer to a request. `isUndecodable` tells a file that cannot be decoded from one that cannot be read now, a
    /// missing program or a cancel.
    virtual Result<QByteArray> ask(const DecoderRequest &request, const JobControl *control = nullptr) = 0;
    /// The same for what answers with a picture.
    Result<DecodedPicture> askForPicture(const DecoderRequest &request, const JobControl *control = nullptr);
};

/// Asks processes of our own decoder, as many at once as there are threads that ask. They are kept for the next request,
/// since starting one takes longer than most pictures; videos get one each, because it has to start another program.
class DecoderProcesses : public Decoder {
public:
    /// `program` is "…/brellin-bild", which lies beside the running program. A file may take it as long as `patience`.
    DecoderProcesses(ProcessRunner &processes, Location program,
                     std::chrono::milliseconds patience = std::chrono::seconds(6))
        : m_processes(processes)
        , m_program(std::move(program))
        , m_patience(patience)
    {
    }

    Result<QByteArray> ask(const DecoderRequest &request, const JobControl *control) override;

private:
    Result<QByteArray> askOnce(const DecoderRequest &request, const JobControl *control);
    std::unique_ptr<DecoderProcess> takeIdle();
    void putBack(std::unique_ptr<DecoderProcess> process);

    ProcessRunner &m_processes;
    const Location m_program;
    const std::chrono::milliseconds m_patience;
    std::atomic<bool> m_drawsVideos = true; ///< until it turns out that no program for it is installed
    std::mutex m_mutex;
    std::vector<std::unique_ptr<DecoderProcess>> m_idle;
};

} // namespace brellin
