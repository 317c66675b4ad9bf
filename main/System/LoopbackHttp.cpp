#include "System/LoopbackHttp.h"

#include "Base/Edition.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

#include <memory>

namespace brellin {

namespace {

constexpr qsizetype mostBytes = qsizetype(256) << 10U;
/// Interval for polling the cancel flag.
constexpr std::chrono::milliseconds pollTime(50);

Failure brokenConnection(QNetworkReply::NetworkError error)
{
    const std::errc code =
        error == QNetworkReply::ConnectionRefusedError ? std::errc::connection_refused : std::errc::connection_reset;
    return {QStringLiteral("Der Modell-Server ist nicht erreichbar."), std::make_error_code(code)};
}

Failure tooSlow()
{
    return {QStringLiteral("Der Modell-Server antwortet nicht."), std::make_error_code(std::errc::timed_out)};
}

Failure tooLong()
{
    return {QStringLiteral("Die Antwort des Modell-Servers ist zu lang."),
            std::make_error_code(std::errc::message_size)};
}

/// A request with no more headers than needed.
QNetworkRequest requestFor(const QUrl &url)
{
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setHeader(QNetworkRequest::UserAgentHeader, Edition::name());
    request.setRawHeader("Accept-Language", "de");
    // Prevents a small response from unpacking to a huge one.
    request.setRawHeader("Accept-Encoding", "identity");
    return request;
}

/// Receives one response until it is complete, too long, too late or cancelled.
class Reception {
public:
    Reception(QNetworkReply &reply, const JobControl *control) : m_reply(reply), m_control(control) {}

    Result<HttpAnswer> collect(std::chrono::milliseconds limit)
    {
        QObject::connect(&m_reply, &QNetworkReply::readyRead, &m_loop, [this] { take(); });
        QObject::connect(&m_reply, &QNetworkReply::finished, &m_loop, &QEventLoop::quit);
        QTimer::singleShot(limit, &m_loop, [this] { giveUp(tooSlow()); });
        QTimer cancelled;
        QObject::connect(&cancelled, &QTimer::timeout, &m_loop, [this] {
            if (m_control && m_control->cancelled())
                giveUp(Failure::cancelled());
        });
        cancelled.start(pollTime);
        if (!m_reply.isFinished())
            m_loop.exec();
        if (!m_failure)
            take();
        return m_failure ? failure(*m_failure) : answer();
    }

private:
    void take()
    {
        m_body += m_reply.readAll();
        if (m_body.size() > mostBytes)
            giveUp(tooLong());
    }

    void giveUp(const Failure &why)
    {
        if (!m_failure)
            m_failure = why;
        m_loop.quit();
    }

    /// Qt also reports error statuses as errors; these are responses, unless the connection broke.
    Result<HttpAnswer> answer() const
    {
        const QNetworkReply::NetworkError error = m_reply.error();
        const int status = m_reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        const bool refused = status >= 400 && error >= QNetworkReply::ContentAccessDenied;
        if (status == 0 || (error != QNetworkReply::NoError && !refused))
            return failure(brokenConnection(error));
        return HttpAnswer{status, m_body};
    }

    QNetworkReply &m_reply;
    const JobControl *const m_control;
    QEventLoop m_loop;
    QByteArray m_body;
    std::optional<Failure> m_failure;
};

} // namespace

Result<HttpAnswer> exchangeHttp(const ModelEndpoint &endpoint, const QString &path,
                                const std::optional<QByteArray> &json, std::chrono::milliseconds limit,
                                const JobControl *control)
{
    if (control && control->cancelled())
        return failure(Failure::cancelled());
    if (limit <= std::chrono::milliseconds::zero())
        return failure(tooSlow());
    QNetworkAccessManager network;
    network.setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    QNetworkRequest request = requestFor(endpoint.url(path));
    if (json)
        request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    const std::unique_ptr<QNetworkReply> reply(json ? network.post(request, *json) : network.get(request));
    reply->setReadBufferSize(mostBytes + 1);
    return Reception(*reply, control).collect(limit);
}

} // namespace brellin
