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
    int status = 0; ///< 200, 404, also a redirect, which is not followed
    QByteArray body;
};

/// One HTTP exchange with a server on this machine: without proxy, redirect, cookies or password. Blocking, with an event
/// loop of its own: called on workers only.
///
/// A GET, or with `json` a POST of it. Whatever the server answers completely is an answer; a refused or broken connection,
/// one that takes longer than `limit`, a body of more than 256 KiB and a cancel are failures.
Result<HttpAnswer> exchangeHttp(const ModelEndpoint &endpoint, const QString &path,
                                const std::optional<QByteArray> &json, std::chrono::milliseconds limit,
                                const JobControl *control);

} // namespace brellin
