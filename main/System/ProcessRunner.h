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

/// What is to be run: the program's path or name, its arguments as bytes (file names need not be UTF-8) and its input.
struct ProcessRequest {
    std::string program;
    std::vector<std::string> arguments;
    QByteArray input;
    Location workingFolder; ///< empty: the caller's
    std::chrono::milliseconds timeout = std::chrono::minutes(2);
    /// A tool gets an environment made for it and ends with this program, however that ends. What opens something for the
    /// user keeps theirs, and goes on.
    enum class Purpose { Tool, OpensForUser };
    Purpose purpose = Purpose::Tool;
    /// For a program that asks: called on the running thread with all it has put out whenever there is more and it has fallen
    /// silent. Gives what it is to read (an empty text, if it asked nothing), or nothing to end it, which counts as a cancel.
    /// May wait for a person; that time does not count. Takes the place of `input`.
    std::function<std::optional<QByteArray>(const QByteArray &output)> reply = {};
    /// Called on the running thread now and then with how many bytes the program has read, where the system tells.
    std::function<void(std::int64_t bytes)> hasRead = {};
};

struct ProcessOutput {
    int exitCode = 0;
    QByteArray output;
    QByteArray errors;
};

/// The port to other programs. Blocking: called on workers only.
class ProcessRunner {
public:
    virtual ~ProcessRunner() = default;

    /// Runs a program to its end. A program that is missing, crashes or takes longer than its time (it is then ended) is a
    /// failure, as is a cancel; an exit code other than 0 is an answer.
    virtual Result<ProcessOutput> run(const ProcessRequest &request, const JobControl *control = nullptr) = 0;
};

class SystemProcessRunner : public ProcessRunner {
public:
    Result<ProcessOutput> run(const ProcessRequest &request, const JobControl *control) override;
};

} // namespace brellin
