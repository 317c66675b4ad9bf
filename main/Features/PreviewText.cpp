#include "Features/PreviewText.h"

#include <QStringDecoder>

#include <algorithm>

namespace brellin {

namespace {

constexpr qsizetype longestLine = 2000;

/// Detects UTF-16 without a byte order mark: every other byte of western text is zero.
std::optional<QStringConverter::Encoding> encodingByZeros(const QByteArray &bytes)
{
    qsizetype even = 0;
    qsizetype odd = 0;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '\0')
            ++(i % 2 == 0 ? even : odd);
    }
    const qsizetype many = bytes.size() / 4;
    if (odd > many && even < many / 16 + 1)
        return QStringConverter::Utf16LE;
    if (even > many && odd < many / 16 + 1)
        return QStringConverter::Utf16BE;
    return std::nullopt;
}

QString decodedAs(QStringDecoder::Encoding encoding, const QByteArray &bytes)
{
    QStringDecoder decoder(encoding); // stateful: drops a character cut off at the end
    return decoder(bytes);
}

/// Removes an incomplete character at the end.
QByteArray withWholeLetters(QByteArray bytes)
{
    for (int i = 0; i < 4 && !bytes.isEmpty() && !bytes.isValidUtf8(); ++i)
        bytes.chop(1);
    return bytes;
}

bool isControl(QChar letter)
{
    return letter < u' ' && letter != u'\n' && letter != u'\r' && letter != u'\t' && letter != u'\f' &&
           letter != u'\x1B';
}

bool looksLikeText(const QString &text)
{
    const qsizetype odd =
        std::ranges::count_if(text, [](QChar letter) { return isControl(letter) || letter.isNull(); });
    return odd <= text.size() / 200;
}

std::optional<QString> decoded(const QByteArray &bytes, bool cutOff)
{
    if (bytes.startsWith("\xEF\xBB\xBF"))
        return QString::fromUtf8(bytes.sliced(3));
    if (const auto encoding = utf16Of(bytes))
        return decodedAs(*encoding, bytes);
    if (bytes.contains('\0'))
        return std::nullopt;
    const QByteArray whole = cutOff ? withWholeLetters(bytes) : bytes;
    if (whole.isValidUtf8())
        return QString::fromUtf8(whole);
    return QString::fromLatin1(bytes);
}

QString withShortLines(const QString &text)
{
    QString result;
    result.reserve(text.size());
    qsizetype column = 0;
    for (const QChar letter : text) {
        column = letter == u'\n' ? 0 : column + 1;
        if (column > longestLine && !letter.isLowSurrogate()) {
            result += u'\n';
            column = 1;
        }
        result += letter;
    }
    return result;
}

} // namespace

std::optional<QStringConverter::Encoding> utf16Of(const QByteArray &beginning)
{
    if (beginning.startsWith("\xFF\xFE") || beginning.startsWith("\xFE\xFF"))
        return QStringConverter::Utf16;
    return beginning.contains('\0') ? encodingByZeros(beginning) : std::nullopt;
}

std::optional<PreviewText> previewText(const QByteArray &beginning, bool cutOff)
{
    std::optional<QString> text = decoded(beginning, cutOff);
    if (!text || !looksLikeText(*text))
        return std::nullopt;
    return PreviewText{withShortLines(text->remove(u'\r')), cutOff};
}

} // namespace brellin
