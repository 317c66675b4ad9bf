#include "Agent/Model/TextBeginning.h"

#include "Disk/EntryPlace.h"

#include <QByteArray>
#include <QStringDecoder>

#include <optional>

namespace brellin {

namespace {

constexpr std::size_t mostSampleBytes = 8192;
/// Text may contain one stray control character in this many; more means binary data.
constexpr qsizetype charactersPerStray = 20;

QByteArray firstBytes(const Location &file)
{
    const Result<EntryPlace> place = openPlace(file);
    if (!place)
        return {};
    const Result<struct stat> status = statusOf(place->at());
    if (!status || !S_ISREG(status->st_mode))
        return {};
    const Result<Descriptor> open = openForReading(place->at());
    if (!open)
        return {};
    return QByteArray::fromStdString(readBeginning(*open, mostSampleBytes));
}

/// Drops a character that is cut off at the end of the bytes.
QString decoded(const QByteArray &bytes)
{
    const std::optional<QStringConverter::Encoding> marked = QStringConverter::encodingForData(bytes);
    QStringDecoder decoder(marked.value_or(QStringConverter::Utf8));
    const QString text = decoder.decode(bytes);
    return decoder.hasError() && !marked ? QString::fromLatin1(bytes) : text;
}

} // namespace

QString beginningOfText(const Location &file)
{
    QString text = decoded(firstBytes(file));
    qsizetype strays = 0;
    for (QChar &c : text) {
        if (c.category() != QChar::Other_Control || c.isSpace())
            continue;
        if (c.isNull())
            return {};
        c = u' ';
        ++strays;
    }
    return strays * charactersPerStray > text.size() ? QString() : text;
}

} // namespace brellin
