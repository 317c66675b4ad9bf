#include "MailScanner/MailboxNames.h"

#include "Base/Location.h"

#include <QStringDecoder>
#include <QStringEncoder>

#include <algorithm>
#include <optional>

namespace brellin {

namespace {

/// Modified base64: "," instead of "/", no padding.
std::optional<QString> shifted(QByteArray text)
{
    const auto decoded =
        QByteArray::fromBase64Encoding(text.replace(',', '/'), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded || (*decoded).isEmpty() || (*decoded).size() % 2 != 0)
        return std::nullopt;
    QStringDecoder decoder(QStringConverter::Utf16BE);
    QString result = decoder.decode(*decoded);
    return decoder.hasError() ? std::nullopt : std::optional(std::move(result));
}

std::optional<QString> fromModifiedUtf7(const QByteArray &bytes)
{
    QString name;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        if (bytes[i] != '&') {
            name += QLatin1Char(bytes[i]);
            continue;
        }
        const qsizetype end = bytes.indexOf('-', i);
        if (end < 0)
            return std::nullopt;
        const std::optional<QString> part =
            end == i + 1 ? QStringLiteral("&") : shifted(bytes.sliced(i + 1, end - i - 1));
        if (!part)
            return std::nullopt;
        name += *part;
        i = end;
    }
    return name;
}

bool isPrintableAscii(QChar c)
{
    return c >= u' ' && c <= u'~';
}

QByteArray encoded(QStringView run)
{
    QStringEncoder encoder(QStringConverter::Utf16BE);
    const QByteArray bytes = encoder.encode(run);
    return '&' + bytes.toBase64(QByteArray::OmitTrailingEquals).replace('/', ',') + '-';
}

} // namespace

QString mailboxNameFrom(const QByteArray &bytes)
{
    const bool isAscii = std::ranges::all_of(bytes, [](char c) { return isPrintableAscii(QLatin1Char(c)); });
    if (isAscii && bytes.contains('&')) {
        if (const std::optional<QString> name = fromModifiedUtf7(bytes))
            return *name;
    }
    return shown(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

QByteArray inModifiedUtf7(const QString &name)
{
    QByteArray bytes;
    for (qsizetype i = 0; i < name.size();) {
        qsizetype end = i;
        while (end < name.size() && !isPrintableAscii(name[end]))
            ++end;
        if (end > i) {
            bytes += encoded(QStringView(name).sliced(i, end - i));
            i = end;
        } else {
            bytes += name[i] == u'&' ? QByteArray("&-") : QByteArray(1, name[i].toLatin1());
            ++i;
        }
    }
    return bytes;
}

} // namespace brellin
