#pragma once

#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

namespace brellin::test {

/// A program running beside the test; killed on destruction. Not a QProcess: its child shares our memory until exec,
/// which hides the starting thread's locks from the thread sanitizer.
class StartedProgram {
public:
    /// The program is looked up in PATH. `changed` is set in its copy of the environment.
    explicit StartedProgram(std::vector<std::string> words, const std::map<std::string, std::string> &changed = {});
    ~StartedProgram();
    StartedProgram(const StartedProgram &) = delete;
    StartedProgram &operator=(const StartedProgram &) = delete;

    bool running();
    /// Valid once the program has exited by itself.
    int exitCode() const;
    void signal(int number) const;

private:
    pid_t m_id = -1; ///< -1: not started
    bool m_ended = false;
    int m_status = 0;
};

} // namespace brellin::test
