#pragma once

#include "Base/JobControl.h"
#include "Base/Result.h"
#include "System/ModelEndpoint.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <optional>

namespace brellin {

struct HttpAnswer {
    int status = 0; ///< 200, 404 …; redirects are not followed
    QByteArray body;
};

/// One HTTP request to a server on this machine: no proxy, redirects, cookies or credentials. Blocking, with its own
/// event loop: call on workers only.
///
/// Sends a GET, or a POST if `json` is given. Any complete response is a result, whatever its status. Fails if the
/// connection is refused or broken, after `limit`, for a body of more than 256 KiB, and when cancelled.
Result<HttpAnswer> exchangeHttp(const ModelEndpoint &endpoint, const QString &path,
                                const std::optional<QByteArray> &json, std::chrono::milliseconds limit,
                                const JobControl *control);

} // namespace brellin
