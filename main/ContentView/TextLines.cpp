#include "ContentView/TextLines.h"

#include "Features/PreviewText.h"

#include <QUtf8StringView>

#include <algorithm>

namespace brellin {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t longestPart = std::size_t(64) * 1024;
constexpr qsizetype judgedBytes = 4096;

bool continuesLetter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// The beginning of the letter at `position`, if it is UTF-8.
std::size_t letterAt(std::string_view text, std::size_t position)
{
    for (int step = 0; step < 3 && position > 0 && continuesLetter(text[position]); ++step)
        --position;
    return position;
}

} // namespace

TextLines::TextLines(const QByteArray &beginning, std::size_t overlap, Each each)
    : m_overlap(std::min(overlap, longestPart / 2))
    , m_each(std::move(each))
    , m_isText(beginning.isEmpty() || previewText(beginning.left(judgedBytes), true))
{
    if (const auto encoding = utf16Of(beginning))
        m_decoder = std::make_unique<QStringDecoder>(*encoding);
}

bool TextLines::add(std::string_view bytes)
{
    if (!m_decoder)
        return addBytes(bytes);
    const QString text = m_decoder->decode(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
    return addBytes(text.toStdString());
}

bool TextLines::addBytes(std::string_view bytes)
{
    if (m_number == 1 && m_rest.empty() && bytes.starts_with(byteOrderMark))
        bytes.remove_prefix(byteOrderMark.size());
    for (std::size_t end = bytes.find('\n'); end != std::string_view::npos; end = bytes.find('\n')) {
        const std::string_view line = bytes.substr(0, end);
        const bool goesOn = m_rest.empty() ? passOn(line) : passOn(m_rest.append(line));
        if (!goesOn)
            return false;
        m_rest.clear();
        ++m_number;
        bytes.remove_prefix(end + 1);
    }
    m_rest.append(bytes);
    while (m_rest.size() > longestPart) {
        if (!passOnPart())
            return false;
    }
    return true;
}

/// The first part of a long line; keeps the overlap.
bool TextLines::passOnPart()
{
    const std::size_t end = letterAt(m_rest, longestPart);
    if (!passOn(std::string_view(m_rest).substr(0, end)))
        return false;
    m_rest.erase(0, letterAt(m_rest, end - m_overlap));
    return true;
}

bool TextLines::end()
{
    return m_rest.empty() || passOn(m_rest);
}

bool TextLines::passOn(std::string_view line)
{
    if (QUtf8StringView(line.data(), static_cast<qsizetype>(line.size())).isValidUtf8())
        return m_each(line, m_number);
    const QString text = QString::fromLatin1(line.data(), static_cast<qsizetype>(line.size()));
    return m_each(text.toStdString(), m_number);
}

} // namespace brellin
