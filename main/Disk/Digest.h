#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <QByteArray>

#include <memory>

struct evp_md_ctx_st;

namespace brellin {

/// The SHA-256 of a file's content as 64 lower-case hexadecimal digits, read in pieces of 1 MiB without touching the
/// file's access time (where the system lets us). A link is not followed, only a regular file has a digest. `control`
/// can cancel between two pieces; with `DigestProgress::CountBytes` its `done` counter grows by the bytes read.
enum class DigestProgress { None, CountBytes };
Result<QByteArray> sha256(const Location &file, JobControl *control = nullptr,
                          DigestProgress progress = DigestProgress::None);

/// The SHA-256 of a few bytes, in the same form.
QByteArray sha256OfBytes(const QByteArray &bytes);

/// The same of bytes that come piece by piece.
class Sha256 {
public:
    Sha256();
    void add(const char *bytes, std::size_t size);
    /// Ends the digest. Empty where the library failed: never mistaken for a digest.
    QByteArray hex();

private:
    struct Free {
        void operator()(evp_md_ctx_st *context) const;
    };
    std::unique_ptr<evp_md_ctx_st, Free> m_context;
    bool m_sound;
};

} // namespace brellin
