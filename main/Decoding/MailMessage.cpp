#include "Decoding/MailMessage.h"

#include "Decoding/MimeLibrary.h"
#include "System/DecoderProtocol.h"

#include <QCryptographicHash>

namespace brellin {

namespace {

std::optional<Instant> instantOf(const char *date)
{
    GDateTime *const time = date ? g_mime_utils_header_decode_date(date) : nullptr;
    if (!time)
        return std::nullopt;
    const Instant instant = instantFromMilliseconds(g_date_time_to_unix(time) * 1000);
    g_date_time_unref(time);
    return instant;
}

/// The value of the first field of this name, undecoded.
const char *rawField(GMimeMessage &message, const char *name)
{
    GMimeHeaderList *const fields = g_mime_object_get_header_list(GMIME_OBJECT(&message));
    GMimeHeader *const field = g_mime_header_list_get_header(fields, name);
    return field ? g_mime_header_get_raw_value(field) : nullptr;
}

std::optional<Instant> receivedOf(GMimeMessage &message)
{
    const char *const field = rawField(message, "Received");
    const QByteArray value(field);
    const qsizetype date = value.lastIndexOf(';');
    return date < 0 ? std::nullopt : instantOf(value.constData() + date + 1);
}

/// The header without the fields in which mail programs keep the message's state.
QByteArray lastingHeader(GMimeMessage &message)
{
    static const QList<QByteArray> changing{"x-mozilla-status", "x-mozilla-status2", "x-mozilla-keys", "status",
                                            "x-status",         "x-keywords",        "x-uid"};
    GMimeHeaderList *const fields = g_mime_object_get_header_list(GMIME_OBJECT(&message));
    QByteArray all;
    for (int i = 0; i < g_mime_header_list_get_count(fields); ++i) {
        GMimeHeader *const field = g_mime_header_list_get_header_at(fields, i);
        if (const QByteArray name(g_mime_header_get_name(field)); !changing.contains(name.toLower()))
            all += name + ':' + g_mime_header_get_raw_value(field);
    }
    return all;
}

QString idOf(GMimeMessage &message)
{
    if (const QString id = mimeText(g_mime_message_get_message_id(&message)).simplified(); !id.isEmpty())
        return id;
    const QByteArray digest = QCryptographicHash::hash(lastingHeader(message), QCryptographicHash::Sha256);
    return QStringLiteral("sha256-") + QString::fromLatin1(digest.toHex());
}

/// Text in the library's memory, which is freed.
QString taken(char *text)
{
    QString copy = mimeText(text).simplified();
    g_free(text);
    return copy;
}

/// The first sender; the field as it is if it contains no address.
QString senderOf(GMimeMessage &message)
{
    for (InternetAddressList *const addresses :
         {g_mime_message_get_from(&message), g_mime_message_get_sender(&message)}) {
        if (addresses && internet_address_list_length(addresses) > 0)
            return taken(internet_address_list_to_string(addresses, nullptr, FALSE));
    }
    const char *const field = rawField(message, "From");
    return field ? taken(g_mime_utils_header_decode_text(nullptr, field)) : QString();
}

} // namespace

Result<MailHead> readMailHead(const QByteArray &bytes)
{
    const MimeObject<GMimeMessage> message = parsedMessage(bytes);
    if (!message || g_mime_header_list_get_count(g_mime_object_get_header_list(GMIME_OBJECT(message.get()))) == 0)
        return failure(undecodable());
    return MailHead{idOf(*message), mimeText(g_mime_message_get_subject(message.get())).simplified(),
                    senderOf(*message), receivedOf(*message), instantOf(rawField(*message, "Date"))};
}

} // namespace brellin
