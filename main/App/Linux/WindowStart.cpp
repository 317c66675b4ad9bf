#include "App/WindowStart.h"

#include "App/ProgramFolders.h"

#include <cstdlib>

#include <unistd.h>

namespace brellin {

namespace {

bool isSet(const char *variable)
{
    const char *const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

} // namespace

Failure becomeWindow(const std::vector<std::string> &folders)
{
    if (!isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY") && !isSet("QT_QPA_PLATFORM"))
        return {QStringLiteral("Hier ist kein Bildschirm, auf dem ein Fenster erscheinen könnte. Die Befehle zeigt: "
                               "brellin --hilfe"),
                {}};
    const std::string program = (programFolder() / "brellin-fenster").native();
    std::vector<std::string> words{program};
    words.insert(words.end(), folders.begin(), folders.end());
    std::vector<char *> arguments;
    for (std::string &word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    ::execv(program.c_str(), arguments.data());
    const Failure why = Failure::lastSystem();
    return {QStringLiteral("Das Fenster kann nicht geöffnet werden: ") + why.message, why.code};
}

} // namespace brellin
