#include "FileOperations/CaptureDay.h"

#include "Base/German.h"
#include "Disk/FileAttributes.h"
#include "Disk/FileTypes.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

namespace brellin {

namespace {

QDate captureDay(const Location &photo, Decoder &decoder, const JobControl &control)
{
    const Result<QByteArray> facts = decoder.ask({decoderWords::facts, {photo.native()}}, &control);
    if (!facts)
        return {};
    const QString taken = QJsonDocument::fromJson(*facts).object().value(QStringLiteral("taken")).toString();
    return QDateTime::fromString(taken, Qt::ISODate).date();
}

} // namespace

QDate dayOf(const Location &entry, Decoder &decoder, const JobControl &control)
{
    const Result<FileAttributes> attributes = readAttributes(entry);
    if (!attributes)
        return {};
    const bool photo =
        attributes->isFile() && fileTypeOf(extensionOf(entry.filename().native())).conformsTo(TypeTrait::Image);
    const QDate taken = photo ? captureDay(entry, decoder, control) : QDate();
    return taken.isValid() ? taken : localDay(attributes->created.value_or(attributes->modified));
}

} // namespace brellin
