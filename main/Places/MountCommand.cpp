#include "Places/MountCommand.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <utility>

namespace brellin {

namespace {

/// Time limit for the server, excluding the time the user needs to answer.
constexpr std::chrono::seconds patience{40};

/// Exit code of "env" if the program is missing.
constexpr int notFound = 127;

Failure notAnswering(const ServerAddress &address)
{
    return {QStringLiteral("Der Server „%1“ antwortet nicht.").arg(address.host()),
            std::make_error_code(std::errc::host_unreachable)};
}

/// The error in "gio: smb://nas/: Failed to mount Windows share: Connection refused" without its prefix. Other lines
/// are unrelated warnings.
QString complaint(const ProcessOutput &output)
{
    QString last;
    for (const QString &line : QString::fromUtf8(output.errors).split(u'\n')) {
        if (line.startsWith(QStringLiteral("gio: ")))
            last = line.mid(5);
    }
    const qsizetype address = last.indexOf(QStringLiteral(": "));
    return address < 0 ? last : last.mid(address + 2).trimmed();
}

bool containsOneOf(const QString &text, const std::initializer_list<QStringView> words)
{
    return std::ranges::any_of(words, [&](QStringView word) { return text.contains(word, Qt::CaseInsensitive); });
}

Failure mountFailure(const QString &text, const ServerAddress &address)
{
    if (containsOneOf(text, {u"refused", u"timed out", u"no route", u"unreachable", u"not known", u"resolv",
                             u"host is down", u"not responding", u"connection failed"}))
        return notAnswering(address);
    if (containsOneOf(text, {u"not mountable", u"not supported", u"doesn’t implement mount", u"no application"}))
        return {
            QStringLiteral("Adressen mit „%1“ kann dieses System nicht verbinden. Es fehlt das Paket „gvfs-backends“.")
                .arg(address.scheme()),
            std::make_error_code(std::errc::protocol_not_supported)};
    if (containsOneOf(text, {u"access denied", u"permission denied", u"authentication", u"password", u"login"}))
        return {QStringLiteral("Der Server „%1“ lässt dich mit diesen Angaben nicht hinein.").arg(address.host()),
                std::make_error_code(std::errc::permission_denied)};
    if (containsOneOf(text, {u"does not exist", u"no such", u"not found"}))
        return {QStringLiteral("Diesen Ordner gibt es auf dem Server „%1“ nicht.").arg(address.host()),
                std::make_error_code(std::errc::no_such_file_or_directory)};
    const QString cause = text.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(text);
    return {QStringLiteral("Die Verbindung mit dem Server „%1“ ist nicht gelungen.").arg(address.host()) + cause, {}};
}

bool isConnectedAlready(const QString &text)
{
    return text.contains(QStringLiteral("already mounted"));
}

} // namespace

/// Runs the program in the C locale, since its output is parsed. Users see its messages only as the cause of a failure.
Result<ProcessOutput> MountCommand::run(const std::vector<std::string> &words, const ServerAddress &address,
                                        MountDialogue *dialogue, const JobControl &control) const
{
    ProcessRequest request;
    request.program = "env";
    request.arguments = {"LC_ALL=C.UTF-8", "LANGUAGE=", m_program};
    request.arguments.insert(request.arguments.end(), words.begin(), words.end());
    request.arguments.push_back(address.text().toStdString());
    request.timeout = patience;
    if (dialogue)
        request.reply = [dialogue](const QByteArray &output) { return dialogue->reply(output); };
    Result<ProcessOutput> done = m_processes.run(request, &control);
    if (!done && done.error().is(std::errc::timed_out))
        return failure(notAnswering(address));
    if (done && done->exitCode == notFound)
        return failure(QStringLiteral("Zum Verbinden mit Servern fehlt das Programm „gio“ (Paket „libglib2.0-bin“)."));
    return done;
}

Result<Location> MountCommand::mount(const ServerAddress &address, const MountDialogue::Ask &ask,
                                     const JobControl &control) const
{
    MountDialogue dialogue(address, ask);
    Result<ProcessOutput> done = run({"mount"}, address, &dialogue, control);
    if (dialogue.guestWanted()) {
        MountDialogue asGuest(address, [](const ServerQuestion &) { return std::nullopt; });
        done = run({"mount", "--anonymous"}, address, &asGuest, control);
        if (asGuest.givenUp())
            return failure(QStringLiteral("Der Server „%1“ lässt keine Gäste zu.").arg(address.host()));
    }
    const ProcessOutput output = TRY(done);
    if (const QString text = complaint(output); output.exitCode != 0 && !isConnectedAlready(text))
        return failure(mountFailure(text, address));
    return placeOf(address, control);
}

/// The folder at which the system exposes the server's files.
Result<Location> MountCommand::placeOf(const ServerAddress &address, const JobControl &control) const
{
    const ProcessOutput output = TRY(run({"info"}, address, nullptr, control));
    for (const QByteArray &line : output.output.split('\n')) {
        constexpr std::string_view mark = "local path: ";
        if (line.startsWith(mark.data()))
            return Location(line.mid(static_cast<qsizetype>(mark.size())).toStdString());
    }
    if (const QString text = complaint(output); !text.isEmpty())
        return failure(mountFailure(text, address));
    return failure(QStringLiteral("Die Verbindung steht, aber die Dateien lassen sich nicht zeigen. "
                                  "Es fehlt das Paket „gvfs-fuse“."));
}

Result<void> MountCommand::unmount(const ServerAddress &address, const JobControl &control) const
{
    const ProcessOutput output = TRY(run({"mount", "--unmount"}, address, nullptr, control));
    if (output.exitCode == 0)
        return {};
    const QString text = complaint(output);
    if (containsOneOf(text, {u"busy", u"outstanding"}))
        return failure(QStringLiteral("Der Server „%1“ wird noch benutzt.").arg(address.host()));
    if (containsOneOf(text, {u"not mounted", u"find enclosing mount"}))
        return {};
    return failure(mountFailure(text, address));
}

} // namespace brellin
