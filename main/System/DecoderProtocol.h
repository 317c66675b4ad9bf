#pragma once

#include "Base/Result.h"

#include <QByteArray>

#include <optional>
#include <string>
#include <vector>

/// What is said between this program and `brellin-bild`, the one that decodes files nobody trusts.
namespace brellin {

/// A word and its arguments, as on a command line; file names are bytes and need not be UTF-8.
struct DecoderRequest {
    std::string word;
    std::vector<std::string> arguments;

    bool operator==(const DecoderRequest &) const = default;
};

namespace decoderWords {
constexpr const char *picture = "bild";   ///< FILE SIDE: a `DecodedPicture`
constexpr const char *pdfPage = "pdf";    ///< FILE PAGE SIDE: a `DecodedPicture`
constexpr const char *video = "video";    ///< FILE SIDE: a `DecodedPicture`; never asked of a lasting process
constexpr const char *facts = "angaben";  ///< FILE: a JSON object
constexpr const char *archive = "archiv"; ///< FILE: a JSON object
constexpr const char *pdfText = "pdf-text";
/// What the archive that is its input holds, in the messages of ArchiveStream.h; never asked of a lasting process.
constexpr const char *archiveNames = "inhalt";
constexpr const char *archiveContents = "entpacken"; ///< the same with what is in the files
constexpr const char *worker = "arbeiter";           ///< answers requests from its input until that ends
} // namespace decoderWords

/// How a decoder ends that was called for one answer.
enum class DecoderExit { Done = 0, Failed = 1, WrongUse = 2, NoVideoProgram = 3, Unreadable = 4 };

/// A picture as bare pixels: nothing of it needs decoding any more.
struct DecodedPicture {
    int width = 0;
    int height = 0;
    bool opaque = true;
    QByteArray pixels; ///< red, green, blue, alpha (not multiplied), row by row without gaps

    bool operator==(const DecodedPicture &) const = default;
};

/// The longest side of a picture that is asked for or given.
constexpr int mostPictureSide = 4096;

QByteArray bytesOf(const DecodedPicture &picture);
/// Nothing where the bytes do not hold together: a decoder may have been taken over by what it decoded.
std::optional<DecodedPicture> pictureFrom(const QByteArray &bytes);

QByteArray bytesOf(const DecoderRequest &request);
DecoderRequest requestFrom(const QByteArray &bytes);

/// An answer as it goes over the wire: what was asked for, or why not.
QByteArray bytesOf(const Result<QByteArray> &answer);
Result<QByteArray> answerFrom(const QByteArray &bytes);

/// A message on the wire is its length in four bytes, the lowest first, and then the message.
QByteArray lengthInFront(qsizetype length);
qsizetype lengthFrom(const char *fourBytes);
constexpr qsizetype longestRequest = qsizetype(64) * 1024;
constexpr qsizetype longestAnswer = qsizetype(mostPictureSide) * mostPictureSide * 4 + 1024;

/// What a lasting decoder says as soon as it is ready.
constexpr const char *decoderGreeting = "bereit";

/// The file's content is to blame: it will not decode the next time either.
Failure undecodable();
bool isUndecodable(const Failure &failure);
/// The file cannot be opened now; that says nothing about its content.
Failure unreadable();

} // namespace brellin
