#include "Decoding/VideoPicture.h"

#include "Base/Descriptor.h"
#include "Decoding/Confinement.h"
#include "Disk/EntryPlace.h"
#include "System/DecoderProtocol.h"

#include <QStandardPaths>

#include <array>
#include <cerrno>
#include <vector>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brellin {

namespace {

constexpr auto programName = "ffmpegthumbnailer";
constexpr qsizetype mostBytes = 64 * 1024 * 1024;

/// In the child: executes the program with its output redirected to `output`. Returns only on failure.
void become(const std::vector<std::string> &words, int output)
{
    std::vector<char *> arguments;
    arguments.reserve(words.size() + 1);
    for (const std::string &word : words)
        arguments.push_back(const_cast<char *>(word.c_str()));
    arguments.push_back(nullptr);
    if (::dup2(output, STDOUT_FILENO) < 0 || !confineThisProcess(ConfinedWork::OtherProgram))
        return;
    ::execv(arguments.front(), arguments.data());
}

QByteArray readAll(int from)
{
    QByteArray bytes;
    QByteArray piece(64 * 1024, Qt::Uninitialized);
    while (bytes.size() < mostBytes) {
        const ssize_t length = ::read(from, piece.data(), static_cast<std::size_t>(piece.size()));
        if (length < 0 && errno == EINTR)
            continue;
        if (length <= 0)
            break;
        bytes.append(piece.constData(), length);
    }
    return bytes;
}

} // namespace

Location videoProgram()
{
    return QStandardPaths::findExecutable(QString::fromLatin1(programName)).toStdString();
}

Result<QByteArray> drawVideo(const Location &program, const Location &video, int side)
{
    // Open the file here, refusing symlinks and pipes, and pass it on as a descriptor.
    const EntryPlace place = TRY(openPlace(video));
    const Descriptor open = TRY(openForReading(place.at()));
    const Descriptor handedOn(::dup(open.number()));
    const std::vector<std::string> words{
        program.native(),    "-i", "/proc/self/fd/" + std::to_string(handedOn.number()), "-o", "-", "-c", "png", "-s",
        std::to_string(side)};
    std::array<int, 2> ends{};
    if (!handedOn.isOpen() || ::pipe(ends.data()) != 0)
        return failure(Failure::lastSystem());
    Descriptor picture(ends[0]);
    Descriptor drawing(ends[1]);
    const pid_t child = ::fork();
    if (child == 0) {
        become(words, drawing.number());
        ::_exit(127);
    }
    drawing.reset();
    QByteArray bytes = child > 0 ? readAll(picture.number()) : QByteArray();
    // Close the pipe, so that a program that keeps writing ends.
    picture.reset();
    int status = 0;
    if (child > 0)
        ::waitpid(child, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || bytes.isEmpty())
        return failure(undecodable());
    return bytes;
}

} // namespace brellin
