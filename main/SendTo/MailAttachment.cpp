#include "SendTo/MailAttachment.h"

#include "Disk/FileAttributes.h"

#include <filesystem>

namespace brellin {

namespace {

Result<void> mayBeAttached(const Location &file)
{
    std::error_code error;
    if (std::filesystem::is_directory(file, error))
        return failure(QStringLiteral("„%1“ ist ein Ordner und lässt sich nicht anhängen. Packe ihn zuerst in ein "
                                      "ZIP-Archiv.")
                           .arg(shownName(file)));
    TRY(readAttributes(file));
    return {};
}

} // namespace

Result<void> attachToMail(const std::vector<Location> &files, ProcessRunner &processes, const JobControl *control)
{
    ProcessRequest request;
    request.program = "xdg-email";
    request.purpose = ProcessRequest::Purpose::OpensForUser;
    for (const Location &file : files) {
        TRY(mayBeAttached(file));
        request.arguments.insert(request.arguments.end(), {"--attach", file.native()});
    }
    if (files.empty())
        return failure(QStringLiteral("Es ist nichts ausgewählt."));
    const Result<ProcessOutput> output = processes.run(request, control);
    if (!output)
        return failure(output.error());
    if (output->exitCode != 0)
        return failure(QStringLiteral("Es ließ sich kein Mail-Programm öffnen. Ist eines eingerichtet?"));
    return {};
}

} // namespace brellin
