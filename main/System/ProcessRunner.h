#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <QByteArray>

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brellin {

/// A program to run: its path or name, its arguments as bytes (file names need not be UTF-8) and its input.
struct ProcessRequest {
    std::string program;
    std::vector<std::string> arguments;
    QByteArray input;
    Location workingFolder; ///< empty: the caller's
    std::chrono::milliseconds timeout = std::chrono::minutes(2);
    /// A tool gets a minimal environment and dies with this process. A program opened for the user gets the user's
    /// environment and keeps running.
    enum class Purpose { Tool, OpensForUser };
    Purpose purpose = Purpose::Tool;
    /// For interactive programs: called on the running thread with the whole output so far, whenever there is new
    /// output and the program has paused. Returns the input to send (empty if it asked nothing), or nullopt to end the
    /// program, which counts as a cancel. May wait for the user; that time does not count. Replaces `input`.
    std::function<std::optional<QByteArray>(const QByteArray &output)> reply = {};
    /// Called on the running thread from time to time with the number of bytes the program has read, if known.
    std::function<void(std::int64_t bytes)> hasRead = {};
};

struct ProcessOutput {
    int exitCode = 0;
    QByteArray output;
    QByteArray errors;
};

/// Port to other programs. Blocking: call on workers only.
class ProcessRunner {
public:
    virtual ~ProcessRunner() = default;

    /// Runs a program until it exits. Fails if it is missing, crashes, exceeds its time (it is then ended) or is
    /// cancelled; a non-zero exit code is a result.
    virtual Result<ProcessOutput> run(const ProcessRequest &request, const JobControl *control = nullptr) = 0;
};

class SystemProcessRunner : public ProcessRunner {
public:
    Result<ProcessOutput> run(const ProcessRequest &request, const JobControl *control) override;
};

} // namespace brellin
