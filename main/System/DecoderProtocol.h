#pragma once

#include "Base/Result.h"

#include <QByteArray>

#include <optional>
#include <string>
#include <vector>

/// The protocol between this program and `brellin-bild`, which decodes untrusted files.
namespace brellin {

/// A command and its arguments; file names are bytes and need not be UTF-8.
struct DecoderRequest {
    std::string word;
    std::vector<std::string> arguments;

    bool operator==(const DecoderRequest &) const = default;
};

namespace decoderWords {
constexpr const char *picture = "bild";   ///< FILE SIDE: a `DecodedPicture`
constexpr const char *pdfPage = "pdf";    ///< FILE PAGE SIDE: a `DecodedPicture`
constexpr const char *video = "video";    ///< FILE SIDE: a `DecodedPicture`; not supported by a persistent process
constexpr const char *facts = "angaben";  ///< FILE [PAGE]: a JSON object
constexpr const char *archive = "archiv"; ///< FILE: a JSON object
constexpr const char *pdfText = "pdf-text";
/// FILE PAGE: the texts of some pages from PAGE on, a JSON object
constexpr const char *pdfPages = "pdf-seiten";
/// Streams the archive on standard input as messages of ArchiveStream.h; not supported by a persistent process.
constexpr const char *archiveNames = "inhalt";
constexpr const char *archiveContents = "entpacken"; ///< the same including file contents
constexpr const char *worker = "arbeiter";           ///< answers requests from standard input until its end
} // namespace decoderWords

/// The exit codes of a decoder that was run for one answer.
enum class DecoderExit { Done = 0, Failed = 1, WrongUse = 2, NoVideoProgram = 3, Unreadable = 4 };

/// A picture as raw pixels, which need no further decoding.
struct DecodedPicture {
    int width = 0;
    int height = 0;
    bool opaque = true;
    QByteArray pixels; ///< RGBA, alpha not premultiplied, row by row without padding

    bool operator==(const DecodedPicture &) const = default;
};

/// The maximum side of a picture, requested or returned.
constexpr int mostPictureSide = 4096;

QByteArray bytesOf(const DecodedPicture &picture);
/// nullopt for inconsistent bytes: the decoder may have been taken over by its input.
std::optional<DecodedPicture> pictureFrom(const QByteArray &bytes);

QByteArray bytesOf(const DecoderRequest &request);
DecoderRequest requestFrom(const QByteArray &bytes);

/// An answer on the wire: the result, or the failure.
QByteArray bytesOf(const Result<QByteArray> &answer);
Result<QByteArray> answerFrom(const QByteArray &bytes);

/// Framing: the length in four bytes, little-endian, then the message.
QByteArray lengthInFront(qsizetype length);
qsizetype lengthFrom(const char *fourBytes);
constexpr qsizetype longestRequest = qsizetype(64) * 1024;
constexpr qsizetype longestAnswer = qsizetype(mostPictureSide) * mostPictureSide * 4 + 1024;

/// Sent by a persistent decoder as soon as it is ready.
constexpr const char *decoderGreeting = "bereit";

/// The file's content is at fault; decoding will fail again.
Failure undecodable();
bool isUndecodable(const Failure &failure);
/// The file cannot be opened at present, which says nothing about its content.
Failure unreadable();

} // namespace brellin
