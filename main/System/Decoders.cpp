#include "System/Decoders.h"

namespace brellin {

namespace {

/// Idle processes to keep.
constexpr std::size_t mostIdle = 3;

Failure noVideoProgram()
{
    return {QStringLiteral("Für Bilder von Videos ist kein Programm eingerichtet."), {}};
}

} // namespace

Result<DecodedPicture> Decoder::askForPicture(const DecoderRequest &request, const JobControl *control)
{
    std::optional<DecodedPicture> picture = pictureFrom(TRY(ask(request, control)));
    if (!picture)
        return failure(undecodable());
    return *std::move(picture);
}

Result<QByteArray> DecoderProcesses::ask(const DecoderRequest &request, const JobControl *control)
{
    if (request.word == decoderWords::video)
        return askOnce(request, control);
    std::unique_ptr<DecoderProcess> process = takeIdle();
    if (!process) {
        process = std::make_unique<DecoderProcess>(m_patience);
        TRY(process->start(m_program, control));
    }
    Result<QByteArray> answer = process->ask(request, control);
    if (process->isFit())
        putBack(std::move(process));
    return answer;
}

Result<QByteArray> DecoderProcesses::askOnce(const DecoderRequest &request, const JobControl *control)
{
    if (!m_drawsVideos)
        return failure(noVideoProgram());
    ProcessRequest running;
    running.program = m_program.native();
    running.arguments = request.arguments;
    running.arguments.insert(running.arguments.begin(), request.word);
    running.timeout = m_patience * 2;
    const ProcessOutput output = TRY(m_processes.run(running, control));
    switch (static_cast<DecoderExit>(output.exitCode)) {
    case DecoderExit::Done:
        return output.output;
    case DecoderExit::Failed:
        return failure(undecodable());
    case DecoderExit::NoVideoProgram:
        m_drawsVideos = false;
        return failure(noVideoProgram());
    default:
        return failure(unreadable());
    }
}

std::unique_ptr<DecoderProcess> DecoderProcesses::takeIdle()
{
    const std::scoped_lock lock(m_mutex);
    if (m_idle.empty())
        return nullptr;
    std::unique_ptr<DecoderProcess> process = std::move(m_idle.back());
    m_idle.pop_back();
    return process;
}

void DecoderProcesses::putBack(std::unique_ptr<DecoderProcess> process)
{
    const std::scoped_lock lock(m_mutex);
    if (m_idle.size() < mostIdle)
        m_idle.push_back(std::move(process));
}

} // namespace brellin
