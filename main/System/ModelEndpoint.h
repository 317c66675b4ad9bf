#pragma once

#include "Base/Result.h"

#include <QString>
#include <QUrl>

#include <compare>

namespace brellin {

/// The address of a model server on this machine. Only numeric loopback addresses are accepted: a host name could
/// resolve to another machine, and nothing may leave this one.
class ModelEndpoint {
public:
    /// Parses "http://127.0.0.1:8080" or "http://[::1]:11434"; the port defaults to 80. Anything else, including a path
    /// or a user name, fails with a message that describes the expected form.
    static Result<ModelEndpoint> parse(const QString &text);

    /// "http://127.0.0.1:8080"; always includes the port.
    const QString &text() const { return m_text; }
    /// `path` must start with "/".
    QUrl url(const QString &path) const { return QUrl(m_text + path); }

    bool operator==(const ModelEndpoint &) const = default;

private:
    explicit ModelEndpoint(QString text) : m_text(std::move(text)) {}

    QString m_text;
};

} // namespace brellin
