#pragma once

#include <QByteArray>
#include <QString>

#include <gmime/gmime.h>

#include <memory>

namespace brellin {

template <class T>
struct MimeUnref {
    void operator()(T *object) const { g_object_unref(object); }
};
/// An owned object of the library.
template <class T>
using MimeObject = std::unique_ptr<T, MimeUnref<T>>;

/// The message in `bytes`, which must outlive it; null if there is none.
MimeObject<GMimeMessage> parsedMessage(const QByteArray &bytes);

/// The library's text, which is UTF-8.
QString mimeText(const char *text);

} // namespace brellin
