#pragma once

#include "System/DecoderProcess.h"
#include "System/ProcessRunner.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

namespace brellin {

/// Port to the decoder of pictures, documents and archives. Blocking and thread-safe: call on workers only.
class Decoder {
public:
    virtual ~Decoder() = default;

    /// Sends a request and waits for the answer. `isUndecodable` distinguishes a bad file from one that cannot be read
    /// now, a missing program or a cancel.
    virtual Result<QByteArray> ask(const DecoderRequest &request, const JobControl *control = nullptr) = 0;
    /// The same for requests that return a picture.
    Result<DecodedPicture> askForPicture(const DecoderRequest &request, const JobControl *control = nullptr);
};

/// Runs decoder processes, as many as there are threads asking. Keeps them for further requests, since starting one
/// takes longer than decoding most pictures. Videos get a process each, because that has to start another program.
class DecoderProcesses : public Decoder {
public:
    /// `program` is "…/brellin-bild" next to the running program. `patience` limits the time per file.
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
    std::atomic<bool> m_drawsVideos = true; ///< false once it turns out that no program for it is installed
    std::mutex m_mutex;
    std::vector<std::unique_ptr<DecoderProcess>> m_idle;
};

} // namespace brellin
