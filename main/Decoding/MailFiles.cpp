#include "Decoding/MailFiles.h"

#include "Decoding/MimeLibrary.h"
#include "Disk/FreeName.h"
#include "System/DecoderProtocol.h"

#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <array>
#include <functional>

namespace brellin {

namespace {

constexpr int deepestForward = 5;
/// Parts of parts, which no mail program nests so deep.
constexpr int deepestPart = 30;

QByteArray contentOf(GMimePart &part)
{
    GMimeDataWrapper *const content = g_mime_part_get_content(&part);
    if (!content)
        return {};
    const MimeObject<GMimeStream> stream(g_mime_stream_mem_new());
    g_mime_data_wrapper_write_to_stream(content, stream.get());
    const GByteArray *const bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(stream.get()));
    return {reinterpret_cast<const char *>(bytes->data), static_cast<qsizetype>(bytes->len)};
}

bool isType(GMimeObject &object, const char *type, const char *subtype)
{
    return g_mime_content_type_is_type(g_mime_object_get_content_type(&object), type, subtype);
}

/// The usual extension of a type that receipts have.
QString extensionFor(GMimeObject &object)
{
    struct Known {
        const char *type;
        const char *subtype;
        const char16_t *extension;
    };
    static constexpr std::array known{Known{"application", "pdf", u".pdf"}, Known{"application", "x-pdf", u".pdf"},
                                      Known{"image", "jpeg", u".jpg"},      Known{"image", "jpg", u".jpg"},
                                      Known{"image", "png", u".png"},       Known{"image", "heic", u".heic"}};
    const auto *const found =
        std::ranges::find_if(known, [&](const Known &one) { return isType(object, one.type, one.subtype); });
    return found == known.end() ? QString() : QString::fromUtf16(found->extension);
}

/// Calls `visit` for each part that is no container. Encrypted parts are left out.
void forEachPart(GMimeObject *object, const std::function<void(GMimePart &)> &visit, int depth, int forwards)
{
    if (!object || depth > deepestPart)
        return;
    if (GMIME_IS_MULTIPART(object)) {
        if (GMIME_IS_MULTIPART_ENCRYPTED(object))
            return;
        GMimeMultipart *const parts = GMIME_MULTIPART(object);
        for (int i = 0; i < g_mime_multipart_get_count(parts); ++i)
            forEachPart(g_mime_multipart_get_part(parts, i), visit, depth + 1, forwards);
    } else if (GMIME_IS_MESSAGE_PART(object)) {
        GMimeMessage *const forwarded = g_mime_message_part_get_message(GMIME_MESSAGE_PART(object));
        if (forwarded && forwards < deepestForward)
            forEachPart(g_mime_message_get_mime_part(forwarded), visit, depth + 1, forwards + 1);
    } else if (GMIME_IS_PART(object)) {
        visit(*GMIME_PART(object));
    }
}

/// The Content-IDs that the message's HTML shows.
QSet<QString> shownIds(GMimeMessage &message)
{
    static const QRegularExpression reference(QStringLiteral(R"(cid:([^"'\s>)]+))"),
                                              QRegularExpression::CaseInsensitiveOption);
    QSet<QString> ids;
    const auto read = [&](GMimePart &part) {
        if (!isType(*GMIME_OBJECT(&part), "text", "html"))
            return;
        const QString html = QString::fromUtf8(contentOf(part));
        for (auto found = reference.globalMatch(html); found.hasNext();)
            ids.insert(QString::fromUtf8(QByteArray::fromPercentEncoding(found.next().captured(1).toUtf8())));
    };
    forEachPart(g_mime_message_get_mime_part(&message), read, 0, 0);
    return ids;
}

/// The name of a part that is an attachment; empty if it is none.
QString attachmentName(GMimePart &part, const QSet<QString> &shownInText)
{
    GMimeObject &object = *GMIME_OBJECT(&part);
    QString name = plainFileName(mimeText(g_mime_part_get_filename(&part)));
    const QString extension = extensionFor(object);
    if (isType(object, "application", "ms-tnef") || name.compare(u"winmail.dat", Qt::CaseInsensitive) == 0)
        return {};
    const QString id = mimeText(g_mime_part_get_content_id(&part));
    if (isType(object, "image", "*") && !id.isEmpty() && shownInText.contains(id))
        return {};
    if (name.isEmpty())
        return extension.isEmpty() ? QString() : QStringLiteral("Anhang") + extension;
    return name.contains(u'.') ? name : name + extension;
}

/// The name, numbered if another file has it.
QString freeName(const QString &name, const std::vector<MailFile> &files)
{
    const auto isTaken = [&](const QString &one) {
        return std::ranges::any_of(
            files, [&](const MailFile &file) { return file.name.compare(one, Qt::CaseInsensitive) == 0; });
    };
    QString free = name;
    for (int number = 2; isTaken(free); ++number)
        free = QString::fromStdString(numberedName(name.toStdString(), number));
    return free;
}

bool disguises(char32_t c)
{
    const QChar::Category category = QChar::category(c);
    return category == QChar::Other_Control || category == QChar::Other_Format || category == QChar::Other_Surrogate ||
           c == U'\\';
}

} // namespace

QString plainFileName(const QString &name)
{
    QList<uint> characters = QString(name).replace(u'\\', u'/').section(u'/', -1).toUcs4();
    characters.removeIf([](uint c) { return disguises(c); });
    QString plain =
        QString::fromUcs4(reinterpret_cast<const char32_t *>(characters.constData()), characters.size()).simplified();
    while (plain.startsWith(u'.'))
        plain = plain.sliced(1).trimmed();
    return QString::fromStdString(fittingName(plain.toStdString()));
}

Result<std::vector<MailFile>> readMailFiles(const QByteArray &bytes)
{
    const MimeObject<GMimeMessage> message = parsedMessage(bytes);
    if (!message)
        return failure(undecodable());
    std::vector<MailFile> files;
    const QSet<QString> shownInText = shownIds(*message);
    const auto add = [&](GMimePart &part) {
        const QString name = attachmentName(part, shownInText);
        if (name.isEmpty())
            return;
        QByteArray content = contentOf(part);
        if (std::ranges::none_of(files, [&](const MailFile &file) { return file.content == content; }))
            files.push_back({freeName(name, files), std::move(content)});
    };
    forEachPart(g_mime_message_get_mime_part(message.get()), add, 0, 0);
    return files;
}

} // namespace brellin
