#include "Disk/Digest.h"

#include "Disk/BytesAt.h"
#include "Disk/EntryPlace.h"
#include "Disk/ReadAhead.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <string_view>

#include <fcntl.h>

namespace brellin {

namespace {

constexpr std::int64_t pieceSize = 1'048'576;
/// From this size on, a thread that reads ahead takes less time than it costs to start.
constexpr std::int64_t worthReadingAhead = 2 * pieceSize;

/// The algorithm, fetched once, since that takes longer than the digest of a small file. Never freed, like the library:
/// a worker may still be using it at exit.
const EVP_MD *algorithm()
{
    static const EVP_MD *const sha256 = [] {
        OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr);
        return EVP_MD_fetch(nullptr, "SHA256", nullptr);
    }();
    return sha256;
}

/// Opens regular files only. Checks before opening, since opening a pipe or device may have side effects, and again
/// afterwards.
Result<Descriptor> openRegularFile(NameIn entry, std::int64_t &size)
{
    const Failure noFile{QStringLiteral("Nur eine Datei hat eine Prüfsumme."),
                         std::make_error_code(std::errc::invalid_argument)};
    const struct stat named = TRY(statusOf(entry));
    if (!S_ISREG(named.st_mode))
        return failure(noFile);
    Descriptor file = TRY(openForReading(entry));
    struct stat status;
    if (::fstat(file.number(), &status) != 0)
        return failure(Failure::lastSystem());
    if (!S_ISREG(status.st_mode))
        return failure(noFile);
    size = status.st_size;
    return file;
}

using AddPiece = std::function<void(std::string_view)>;

Result<void> stillWanted(const JobControl *control)
{
    return control != nullptr && control->cancelled() ? failure(Failure::cancelled()) : Result<void>();
}

Result<void> addAll(const Descriptor &file, std::int64_t size, const JobControl *control, const AddPiece &add)
{
    // Small files need only a small buffer.
    const auto capacity = static_cast<std::size_t>(std::clamp<std::int64_t>(size, 4096, pieceSize));
    const auto piece = std::make_unique_for_overwrite<char[]>(capacity);
    for (off_t at = 0;;) {
        TRY(stillWanted(control));
        const std::size_t length = TRY(readAt(file.number(), piece.get(), capacity, at));
        if (length == 0)
            return {};
        add({piece.get(), length});
        at += static_cast<off_t>(length);
    }
}

Result<void> addAllReadAhead(const Descriptor &file, const JobControl *control, const AddPiece &add)
{
    ReadAhead pieces(file.number());
    for (;;) {
        TRY(stillWanted(control));
        const std::string_view piece = TRY(pieces.next());
        if (piece.empty())
            return {};
        add(piece);
    }
}

} // namespace

void Sha256::Free::operator()(evp_md_ctx_st *context) const
{
    EVP_MD_CTX_free(context);
}

Sha256::Sha256()
    : m_context(EVP_MD_CTX_new())
    , m_sound(m_context != nullptr && algorithm() != nullptr &&
              EVP_DigestInit_ex2(m_context.get(), algorithm(), nullptr) == 1)
{
}

void Sha256::add(const char *bytes, std::size_t size)
{
    m_sound = m_sound && EVP_DigestUpdate(m_context.get(), bytes, size) == 1;
}

QByteArray Sha256::hex()
{
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest;
    unsigned length = 0;
    if (!m_sound || EVP_DigestFinal_ex(m_context.get(), digest.data(), &length) != 1)
        return {};
    return QByteArray(reinterpret_cast<const char *>(digest.data()), static_cast<qsizetype>(length)).toHex();
}

Result<QByteArray> sha256(const Location &file, JobControl *control, DigestProgress progress)
{
    std::int64_t size = 0;
    const Descriptor source = TRY(openRegularFile({AT_FDCWD, file.c_str()}, size));
    Sha256 hash;
    const auto add = [&](std::string_view piece) {
        hash.add(piece.data(), piece.size());
        if (control != nullptr && progress == DigestProgress::CountBytes)
            control->advance(static_cast<qint64>(piece.size()));
    };
    TRY(size < worthReadingAhead ? addAll(source, size, control, add) : addAllReadAhead(source, control, add));
    QByteArray digest = hash.hex();
    if (digest.isEmpty())
        return failure(QStringLiteral("Die Prüfsumme ließ sich nicht berechnen."));
    return digest;
}

QByteArray sha256OfBytes(const QByteArray &bytes)
{
    Sha256 hash;
    hash.add(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    return hash.hex();
}

} // namespace brellin
