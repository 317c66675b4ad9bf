#pragma once

#include "Base/Result.h"

#include <QString>
#include <QUrl>

#include <compare>

namespace brellin {

/// The address of a model server on this machine. There are none but loopback addresses given as numbers: a name can be
/// made to point elsewhere, and nothing may leave the machine.
class ModelEndpoint {
public:
    /// "http://127.0.0.1:8080" or "http://[::1]:11434"; without a port it is 80. Anything else, also a path or a user name,
    /// is a failure that says what is wanted.
    static Result<ModelEndpoint> parse(const QString &text);

    /// "http://127.0.0.1:8080", always with its port.
    const QString &text() const { return m_text; }
    /// `path` begins with "/".
    QUrl url(const QString &path) const { return QUrl(m_text + path); }

    bool operator==(const ModelEndpoint &) const = default;

private:
    explicit ModelEndpoint(QString text) : m_text(std::move(text)) {}

    QString m_text;
};

} // namespace brellin
