#include "Decoding/Mp4Facts.h"

#include "Decoding/Bytes.h"

#include <QDateTime>

namespace brellin {

namespace {

constexpr int mostAtoms = 10'000;
constexpr qint64 mostDescription = 16 * 1024 * 1024;
/// Seconds from 1904 (QuickTime's epoch) to 1970.
constexpr qint64 epochOffset = 2'082'844'800;

/// Calls `found` with the name and content of each atom in `bytes`.
template <class Found>
void forEachAtom(QByteArrayView bytes, const Found &found)
{
    const Bytes atoms(bytes);
    for (qsizetype at = 0; at + 8 <= atoms.size();) {
        const qsizetype size = atoms.number32(at);
        if (size < 8)
            return;
        found(atoms.part(at + 4, 4), atoms.part(at + 8, size - 8));
        at += size;
    }
}

void takeFilm(QJsonObject &facts, const Bytes &header)
{
    const bool wide = header.number(0, 1) == 1;
    const auto scale = static_cast<double>(header.number32(wide ? 20 : 12));
    const auto length = static_cast<double>(wide ? header.number64(24) : header.number32(16));
    if (scale > 0 && length > 0)
        facts.insert(QStringLiteral("seconds"), length / scale);
    const auto created = static_cast<qint64>(wide ? header.number64(4) : header.number32(4));
    const QDateTime taken = QDateTime::fromSecsSinceEpoch(created - epochOffset);
    if (created > epochOffset && taken.isValid() && taken.date().year() < 2200)
        facts.insert(QStringLiteral("taken"), taken.toString(Qt::ISODate));
}

void takeTrack(QJsonObject &facts, const Bytes &header)
{
    const qsizetype end = header.size();
    const auto width = static_cast<int>(header.number16(end - 8));
    const auto height = static_cast<int>(header.number16(end - 4));
    if (width > facts.value(QStringLiteral("width")).toInt() && height > 0) {
        facts.insert(QStringLiteral("width"), width);
        facts.insert(QStringLiteral("height"), height);
    }
}

QJsonObject filmFacts(QByteArrayView description)
{
    QJsonObject facts;
    forEachAtom(description, [&](QByteArrayView name, QByteArrayView content) {
        if (name == "mvhd")
            takeFilm(facts, Bytes(content));
        if (name == "trak")
            forEachAtom(content, [&](QByteArrayView inner, QByteArrayView header) {
                if (inner == "tkhd")
                    takeTrack(facts, Bytes(header));
            });
    });
    return facts;
}

} // namespace

QJsonObject mp4Facts(QIODevice &file)
{
    qint64 at = 0;
    for (int i = 0; i < mostAtoms && file.seek(at); ++i) {
        const QByteArray head = file.read(16);
        const Bytes bytes(head);
        const bool wide = bytes.number32(0) == 1;
        const auto size = static_cast<qint64>(wide ? bytes.number64(8) : bytes.number32(0));
        if (bytes.has(4, "moov")) {
            file.seek(at + (wide ? 16 : 8));
            return filmFacts(file.read(std::clamp<qint64>(size, 0, mostDescription)));
        }
        if (size < 8 || size > file.size() - at)
            return {};
        at += size;
    }
    return {};
}

} // namespace brellin
