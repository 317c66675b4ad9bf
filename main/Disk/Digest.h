#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <QByteArray>

#include <memory>

struct evp_md_ctx_st;

namespace brellin {

/// SHA-256 of a file's content as 64 lower-case hexadecimal digits, preserves the access time where possible. Large files are
/// read ahead by a second thread. Fails for links and anything but regular files. `control` can cancel between pieces; with
/// `DigestProgress::CountBytes` its `done` counter grows by the bytes read.
enum class DigestProgress { None, CountBytes };
Result<QByteArray> sha256(const Location &file, JobControl *control = nullptr,
                          DigestProgress progress = DigestProgress::None);

/// SHA-256 of a byte array, in the same form.
QByteArray sha256OfBytes(const QByteArray &bytes);

/// SHA-256 of data added in pieces.
class Sha256 {
public:
    Sha256();
    void add(const char *bytes, std::size_t size);
    /// Finishes and returns the digest; empty if the library failed.
    QByteArray hex();

private:
    struct Free {
        void operator()(evp_md_ctx_st *context) const;
    };
    std::unique_ptr<evp_md_ctx_st, Free> m_context;
    bool m_sound;
};

} // namespace brellin
