#pragma once

#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

namespace brellin::test {

/// A program that runs beside the test; killed with it. Not a QProcess: its child shares our memory until it becomes the program,
/// which leaves the thread sanitizer blind to the locks of the thread that started it.
class StartedProgram {
public:
    /// Found in PATH. `changed` is set in its copy of our environment.
    explicit StartedProgram(std::vector<std::string> words, const std::map<std::string, std::string> &changed = {});
    ~StartedProgram();
    StartedProgram(const StartedProgram &) = delete;
    StartedProgram &operator=(const StartedProgram &) = delete;

    bool running();
    /// Of one that has ended by itself.
    int exitCode() const;
    void signal(int number) const;

private:
    pid_t m_id = -1; ///< -1: not started
    bool m_ended = false;
    int m_status = 0;
};

} // namespace brellin::test
