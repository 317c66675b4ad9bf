#include "Support/StartedProgram.h"

#include <csignal>
#include <cstdlib>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ; // NOLINT(readability-redundant-declaration): not every system's headers declare it

namespace brellin::test {

namespace {

std::vector<std::string> environmentWith(const std::map<std::string, std::string> &changed)
{
    std::vector<std::string> all;
    for (char **variable = environ; *variable != nullptr; ++variable) {
        const std::string text(*variable);
        if (!changed.contains(text.substr(0, text.find('='))))
            all.push_back(text);
    }
    for (const auto &[name, value] : changed)
        all.push_back(name + '=' + value);
    return all;
}

std::vector<char *> pointersTo(std::vector<std::string> &texts)
{
    std::vector<char *> pointers;
    for (std::string &text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

StartedProgram::StartedProgram(std::vector<std::string> words, const std::map<std::string, std::string> &changed)
{
    std::vector<std::string> environment = environmentWith(changed);
    if (::posix_spawnp(&m_id, words.front().c_str(), nullptr, nullptr, pointersTo(words).data(),
                       pointersTo(environment).data()) != 0)
        m_id = -1;
}

StartedProgram::~StartedProgram()
{
    if (!running())
        return;
    signal(SIGKILL);
    ::waitpid(m_id, nullptr, 0);
}

bool StartedProgram::running()
{
    if (m_id > 0 && !m_ended)
        m_ended = ::waitpid(m_id, &m_status, WNOHANG) == m_id;
    return m_id > 0 && !m_ended;
}

int StartedProgram::exitCode() const
{
    return m_ended && WIFEXITED(m_status) ? WEXITSTATUS(m_status) : -1;
}

void StartedProgram::signal(int number) const
{
    if (m_id > 0 && !m_ended)
        ::kill(m_id, number);
}

} // namespace brellin::test
