#include "MailScanner/ReceiptOverview.h"

#include <QStringDecoder>

#include <algorithm>
#include <array>

namespace brellin {

namespace {

const QStringList &usualColumns()
{
    static const QStringList columns{u"Datum"_qs, u"Art"_qs,     u"Firma"_qs,   u"Betrag"_qs,
                                     u"Datei"_qs, u"Betreff"_qs, u"Absender"_qs};
    return columns;
}

/// The characters that Windows-1252 has where Latin-1 has control characters (0x80 … 0x9F).
constexpr std::array<char16_t, 32> windowsCharacters{0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                     0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                     0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                     0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

QString fromWindows(const QByteArray &bytes)
{
    QString text = QString::fromLatin1(bytes);
    for (QChar &c : text) {
        if (c >= QChar(0x80) && c < QChar(0xA0))
            c = windowsCharacters[c.unicode() - 0x80U];
    }
    return text;
}

/// The text in this encoding; nullopt if the bytes are not valid in it.
std::optional<QString> decoded(const QByteArray &bytes, QStringConverter::Encoding encoding)
{
    QStringDecoder decoder(encoding);
    QString text = decoder.decode(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(std::move(text));
}

bool hasWideMark(const QByteArray &bytes)
{
    return bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF");
}

/// Spreadsheets take text that begins so for a formula.
bool looksLikeFormula(const QString &field)
{
    static const QString first = QStringLiteral("=+-@\t\r");
    return !field.isEmpty() && first.contains(field.front());
}

QString asText(const QString &field)
{
    return looksLikeFormula(field) ? u'\'' + field : field;
}

QString valueOf(const OverviewLine &line, const QString &column)
{
    switch (usualColumns().indexOf(column)) {
    case 0:
        return line.day.toString(Qt::ISODate);
    case 1:
        return title(line.kind);
    case 2:
        return asText(line.company);
    case 3:
        return line.amount; // "-12,00 €" must stay a number
    case 4:
        return asText(line.file);
    case 5:
        return asText(line.subject);
    case 6:
        return asText(line.sender);
    default:
        return {};
    }
}

/// The separator of a header: the first that stands behind a name; ";" if there is none.
QChar separatorIn(const QString &header)
{
    const auto found = std::ranges::find_if(header, [](QChar c) { return c == u';' || c == u',' || c == u'\t'; });
    return found == header.end() ? QChar(u';') : *found;
}

} // namespace

QString ReceiptOverview::fileName()
{
    return QStringLiteral("Belege-Übersicht.csv");
}

ReceiptOverview::ReceiptOverview(const QByteArray &content) : m_columns(usualColumns())
{
    m_marked = content.startsWith("\xEF\xBB\xBF") || hasWideMark(content);
    if (const std::optional<QString> text = decoded(content, QStringConverter::Utf8); text && !hasWideMark(content)) {
        m_text = *text;
    } else {
        m_converted = true;
        m_text = hasWideMark(content) ? decoded(content, QStringConverter::Utf16).value_or(QString()) : QString();
        if (m_text.isEmpty())
            m_text = fromWindows(content);
    }
    if (m_text.isEmpty())
        return;
    if (m_text.contains(u"\r\n"))
        m_lineEnd = QStringLiteral("\r\n");
    m_separator = separatorIn(m_text.section(u'\n', 0, 0));
    if (const QStringList header = recordAt(0).fields; header.contains(u"Datei"_qs))
        m_columns = header;
}

ReceiptOverview::Record ReceiptOverview::recordAt(qsizetype begin) const
{
    Record record{begin, m_text.size(), {QString()}};
    bool inQuotes = false;
    for (qsizetype i = begin; i < m_text.size(); ++i) {
        const QChar c = m_text[i];
        if (c == u'"') {
            const bool isDouble = inQuotes && i + 1 < m_text.size() && m_text[i + 1] == u'"';
            if (isDouble)
                record.fields.last() += m_text[i++];
            else
                inQuotes = !inQuotes;
        } else if (!inQuotes && c == m_separator) {
            record.fields << QString();
        } else if (!inQuotes && c == u'\n') {
            record.end = i + 1;
            break;
        } else if (inQuotes || c != u'\r') {
            record.fields.last() += c;
        }
    }
    return record;
}

std::vector<ReceiptOverview::Record> ReceiptOverview::records() const
{
    std::vector<Record> all;
    for (qsizetype begin = 0; begin < m_text.size(); begin = all.back().end)
        all.push_back(recordAt(begin));
    return all;
}

bool ReceiptOverview::names(const QString &file) const
{
    const qsizetype column = m_columns.indexOf(u"Datei"_qs);
    return std::ranges::any_of(records(), [&](const Record &one) {
        const QString value = one.fields.value(column);
        return value == file || value == asText(file);
    });
}

void ReceiptOverview::add(const OverviewLine &line)
{
    if (m_text.isEmpty())
        m_text = m_columns.join(m_separator) + m_lineEnd;
    else if (!m_text.endsWith(u'\n'))
        m_text += m_lineEnd;
    QStringList fields = fieldsOf(line);
    for (QString &field : fields)
        field = quoted(field);
    m_text += fields.join(m_separator) + m_lineEnd;
}

bool ReceiptOverview::remove(const OverviewLine &line)
{
    const std::vector<Record> all = records();
    const auto found = std::ranges::find(all.rbegin(), all.rend(), fieldsOf(line), &Record::fields);
    if (found == all.rend())
        return false;
    m_text.remove(found->begin, found->end - found->begin);
    return true;
}

QByteArray ReceiptOverview::content() const
{
    return (m_marked ? QByteArray("\xEF\xBB\xBF") : QByteArray()) + m_text.toUtf8();
}

QStringList ReceiptOverview::fieldsOf(const OverviewLine &line) const
{
    QStringList fields;
    for (const QString &column : m_columns)
        fields << valueOf(line, column);
    return fields;
}

QString ReceiptOverview::quoted(QString field) const
{
    if (!field.contains(m_separator) && !field.contains(u'"') && !field.contains(u'\n') && !field.contains(u'\r'))
        return field;
    return u'"' + field.replace(u'"', QStringLiteral("\"\"")) + u'"';
}

} // namespace brellin
