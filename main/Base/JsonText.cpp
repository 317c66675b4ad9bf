#include "Base/JsonText.h"

#include <algorithm>

namespace brellin {

namespace {

bool isSpecial(char c)
{
    return c == '"' || c == '\\' || static_cast<unsigned char>(c) < 0x20;
}

void appendEscaped(QByteArray &text, char c)
{
    if (static_cast<unsigned char>(c) < 0x20)
        text += "\\u00" + QByteArray::number(c, 16).rightJustified(2, '0');
    else
        text.append('\\').append(c);
}

} // namespace

void appendJsonString(QByteArray &text, std::string_view utf8)
{
    text += '"';
    while (!utf8.empty()) {
        const auto special = std::ranges::find_if(utf8, isSpecial);
        const auto plain = static_cast<std::size_t>(special - utf8.begin());
        text.append(utf8.data(), static_cast<qsizetype>(plain));
        utf8.remove_prefix(plain);
        if (utf8.empty())
            break;
        appendEscaped(text, utf8.front());
        utf8.remove_prefix(1);
    }
    text += '"';
}

void appendJsonWord(QByteArray &text, const char16_t *word)
{
    text += '"';
    for (; *word != u'\0'; ++word)
        text += static_cast<char>(*word);
    text += '"';
}

void appendJson(QByteArray &text, const QString &value)
{
    const QByteArray bytes = value.toUtf8();
    appendJsonString(text, {bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

void appendJson(QByteArray &text, const Location &value)
{
    if (isItsOwnText(value))
        appendJsonString(text, value.native());
    else
        appendJson(text, textOf(value));
}

void appendJson(QByteArray &text, const QJsonValue &value)
{
    const QByteArray list = jsonText(QJsonArray{value});
    text.append(list.constData() + 1, list.size() - 2);
}

} // namespace brellin
