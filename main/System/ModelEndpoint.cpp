#include "System/ModelEndpoint.h"

#include <QRegularExpression>

namespace brellin {

namespace {

constexpr int defaultPort = 80;
constexpr int highestPort = 65535;

Failure refusal()
{
    return {QStringLiteral("Erlaubt sind nur Adressen dieses Rechners als Zahlen, z. B. „http://127.0.0.1:8080“ oder "
                           "„http://[::1]:11434“."),
            std::make_error_code(std::errc::invalid_argument)};
}

} // namespace

Result<ModelEndpoint> ModelEndpoint::parse(const QString &text)
{
    // No leading zeros: some systems parse "010" as octal.
    static const QRegularExpression form(
        QStringLiteral(R"(\Ahttp://(127(?:\.(?:0|[1-9][0-9]?|1[0-9]{2}|2[0-4][0-9]|25[0-5])){3}|\[::1\]))"
                       R"((?::([1-9][0-9]{0,4}))?/?\z)"));
    const QRegularExpressionMatch match = form.match(text.trimmed());
    if (!match.hasMatch())
        return failure(refusal());
    const int port = match.hasCaptured(2) ? match.captured(2).toInt() : defaultPort;
    if (port > highestPort)
        return failure(refusal());
    return ModelEndpoint(QStringLiteral("http://%1:%2").arg(match.captured(1)).arg(port));
}

} // namespace brellin
