#include "Decoding/Answers.h"
#include "Decoding/ArchiveEntries.h"
#include "Decoding/Confinement.h"
#include "Decoding/Pictures.h"
#include "Decoding/VideoPicture.h"

#include <QBuffer>
#include <QFontDatabase>
#include <QGuiApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <unistd.h>

using namespace brellin;

namespace {

/// Lowers the priority: thumbnails must not delay what a person waits for. Failure does not matter.
void giveWay()
{
    constexpr int niceness = 10;
    [[maybe_unused]] const int now = ::nice(niceness);
}

Result<QByteArray> videoPicture(const Location &program, const DecoderRequest &request)
{
    giveWay();
    const int side = std::clamp(std::atoi(request.arguments[1].c_str()), 1, mostPictureSide);
    const QByteArray drawn = TRY(drawVideo(program, request.arguments[0], side));
    TRY(confineThisProcess());
    QBuffer buffer;
    buffer.setData(drawn);
    buffer.open(QIODevice::ReadOnly);
    return bytesOf(TRY(decodePicture(buffer, side)));
}

DecoderExit print(const Result<QByteArray> &answer)
{
    if (!answer) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(answer.error().message));
        return isUndecodable(answer.error()) ? DecoderExit::Failed : DecoderExit::Unreadable;
    }
    const auto size = static_cast<std::size_t>(answer->size());
    return std::fwrite(answer->constData(), 1, size, stdout) == size ? DecoderExit::Done : DecoderExit::Unreadable;
}

DecoderExit work()
{
    giveWay();
    // Build the font cache now: it may take long the first time, and must not count as a picture's time.
    QFontDatabase::families();
    if (!confineThisProcess(ConfinedWork::ManyFiles))
        return DecoderExit::Unreadable;
    answerAll(STDIN_FILENO, STDOUT_FILENO);
    return DecoderExit::Done;
}

DecoderExit stream(ArchiveContents contents)
{
    if (!confineThisProcess(ConfinedWork::WholeArchive))
        return DecoderExit::Unreadable;
    return streamArchive(STDIN_FILENO, STDOUT_FILENO, contents) ? DecoderExit::Done : DecoderExit::Unreadable;
}

bool isKnown(const DecoderRequest &request)
{
    const std::size_t count = request.arguments.size();
    if (request.word == decoderWords::picture || request.word == decoderWords::video)
        return count == 2;
    if (request.word == decoderWords::pdfPage)
        return count == 3;
    return count == 1 && (request.word == decoderWords::facts || request.word == decoderWords::archive ||
                          request.word == decoderWords::pdfText);
}

DecoderExit run(const DecoderRequest &request)
{
    if (request.word == decoderWords::worker && request.arguments.empty())
        return work();
    if (request.word == decoderWords::archiveNames && request.arguments.empty())
        return stream(ArchiveContents::Skipped);
    if (request.word == decoderWords::archiveContents && request.arguments.empty())
        return stream(ArchiveContents::Included);
    if (!isKnown(request)) {
        std::fputs("Aufruf: brellin-bild pdf-text|angaben|archiv DATEI\n"
                   "        brellin-bild bild|video DATEI SEITENLÄNGE\n"
                   "        brellin-bild pdf DATEI SEITE SEITENLÄNGE\n"
                   "        brellin-bild inhalt|entpacken <ARCHIV\n"
                   "        brellin-bild arbeiter\n",
                   stderr);
        return DecoderExit::WrongUse;
    }
    if (request.word == decoderWords::video) {
        const Location program = videoProgram();
        return program.empty() ? DecoderExit::NoVideoProgram : print(videoPicture(program, request));
    }
    if (const Result<void> confined = confineThisProcess(); !confined)
        return print(failure(confined.error()));
    return print(answer(request));
}

/// Only vector pictures need more than Qt Core, since they may contain text.
std::unique_ptr<QCoreApplication> applicationFor(const DecoderRequest &request, int &argc, char **argv)
{
    if (request.word != decoderWords::worker && request.word != decoderWords::picture)
        return std::make_unique<QCoreApplication>(argc, argv);
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    // Do not load a platform theme, which might talk to the desktop.
    ::unsetenv("QT_QPA_PLATFORMTHEME");
    ::unsetenv("QT_IM_MODULE");
    return std::make_unique<QGuiApplication>(argc, argv);
}

} // namespace

/// Decodes untrusted files and prints the results. Run by the other programs, not by users.
int main(int argc, char **argv)
{
    DecoderRequest request;
    if (argc > 1)
        request = {argv[1], std::vector<std::string>(argv + 2, argv + argc)};
    const std::unique_ptr<QCoreApplication> application = applicationFor(request, argc, argv);
    const DecoderExit outcome = run(request);
    // Exit without destructors: a hostile file may have corrupted what they would touch.
    const bool written = std::fflush(stdout) == 0;
    std::_Exit(static_cast<int>(written ? outcome : DecoderExit::Unreadable));
}
