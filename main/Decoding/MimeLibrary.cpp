#include "Decoding/MimeLibrary.h"

#include <array>

namespace brellin {

namespace {

/// Once a process. Texts without a charset are UTF-8, or what old programs sent.
void prepareLibrary()
{
    static const bool prepared = [] {
        g_mime_init();
        std::array<const char *, 3> charsets{"utf-8", "windows-1252", nullptr};
        g_mime_parser_options_set_fallback_charsets(g_mime_parser_options_get_default(), charsets.data());
        return true;
    }();
    static_cast<void>(prepared);
}

} // namespace

MimeObject<GMimeMessage> parsedMessage(const QByteArray &bytes)
{
    prepareLibrary();
    const MimeObject<GMimeStream> stream(
        g_mime_stream_mem_new_with_buffer(bytes.constData(), static_cast<std::size_t>(bytes.size())));
    const MimeObject<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
    return MimeObject<GMimeMessage>(g_mime_parser_construct_message(parser.get(), nullptr));
}

QString mimeText(const char *text)
{
    return text ? QString::fromUtf8(text) : QString();
}

} // namespace brellin
