#include "Decoding/Answers.h"

#include "Decoding/ArchiveListing.h"
#include "Decoding/MediaFacts.h"
#include "Decoding/PdfPage.h"
#include "Decoding/Pictures.h"
#include "Disk/EntryPlace.h"

#include <QFile>
#include <QJsonDocument>

#include <algorithm>
#include <cerrno>
#include <charconv>

#include <sys/stat.h>
#include <unistd.h>

namespace brellin {

namespace {

/// Parses a whole number from 0 to `most`; -1 if invalid.
int numberIn(const std::string &text, int most)
{
    int number = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole && number >= 0 && number <= most ? number : -1;
}

struct OpenFile {
    Descriptor descriptor;
    QFile file;
};

Result<void> openInto(OpenFile &open, const Location &location)
{
    const Result<EntryPlace> place = openPlace(location);
    if (!place)
        return failure(unreadable());
    Result<Descriptor> descriptor = openForReading(place->at());
    if (!descriptor)
        return failure(unreadable());
    open.descriptor = *std::move(descriptor);
    struct stat status{};
    if (::fstat(open.descriptor.number(), &status) != 0 || !S_ISREG(status.st_mode))
        return failure(unreadable());
    if (!open.file.open(open.descriptor.number(), QIODevice::ReadOnly))
        return failure(unreadable());
    return {};
}

QByteArray jsonOf(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

Result<QByteArray> answerAbout(OpenFile &open, const DecoderRequest &request)
{
    const auto argument = [&](std::size_t index, int most) {
        return index < request.arguments.size() ? numberIn(request.arguments[index], most) : -1;
    };
    if (request.word == decoderWords::picture && argument(1, mostPictureSide) > 0)
        return bytesOf(TRY(decodePicture(open.file, argument(1, mostPictureSide))));
    if (request.word == decoderWords::pdfPage && argument(1, 1'000'000) >= 0 && argument(2, mostPictureSide) > 0)
        return bytesOf(TRY(drawPdfPage(open.file, argument(1, 1'000'000), argument(2, mostPictureSide))));
    if (request.word == decoderWords::facts)
        return jsonOf(TRY(mediaFacts(open.file, std::max(argument(1, 1'000'000), 0))));
    if (request.word == decoderWords::archive)
        return jsonOf(TRY(archiveListing(open.descriptor.number())));
    if (request.word == decoderWords::pdfText)
        return TRY(firstPageText(open.file)).toUtf8();
    if (request.word == decoderWords::pdfPages && argument(1, 1'000'000) >= 0)
        return jsonOf(TRY(pageTexts(open.file, argument(1, 1'000'000))));
    return failure(Failure::system(EINVAL));
}

bool readExactly(int in, char *into, qsizetype size)
{
    while (size > 0) {
        const ssize_t length = ::read(in, into, static_cast<std::size_t>(size));
        if (length < 0 && errno == EINTR)
            continue;
        if (length <= 0)
            return false;
        into += length;
        size -= length;
    }
    return true;
}

bool writeExactly(int out, const QByteArray &bytes)
{
    for (qsizetype written = 0; written < bytes.size();) {
        const ssize_t length =
            ::write(out, bytes.constData() + written, static_cast<std::size_t>(bytes.size() - written));
        if (length < 0 && errno == EINTR)
            continue;
        if (length <= 0)
            return false;
        written += length;
    }
    return true;
}

bool say(int out, const QByteArray &message)
{
    return writeExactly(out, lengthInFront(message.size())) && writeExactly(out, message);
}

} // namespace

Result<QByteArray> answer(const DecoderRequest &request)
{
    if (request.arguments.empty())
        return failure(Failure::system(EINVAL));
    OpenFile open;
    TRY(openInto(open, request.arguments.front()));
    return answerAbout(open, request);
}

void answerAll(int in, int out)
{
    if (!say(out, decoderGreeting))
        return;
    for (;;) {
        QByteArray head(4, '\0');
        if (!readExactly(in, head.data(), head.size()))
            return;
        const qsizetype size = lengthFrom(head.constData());
        if (size <= 0 || size > longestRequest)
            return;
        QByteArray message(size, '\0');
        if (!readExactly(in, message.data(), size) || !say(out, bytesOf(answer(requestFrom(message)))))
            return;
    }
}

} // namespace brellin
