#include "Base/FreshId.h"

#include <QRandomGenerator>

namespace brellin {

QUuid freshId()
{
    thread_local QRandomGenerator64 random = QRandomGenerator64::securelySeeded();
    const quint64 first = random();
    const quint64 second = random();
    const auto byte = [second](int number) { return static_cast<uchar>(second >> (8 * number)); };
    // The bits that mark a random UUID (RFC 4122).
    const auto version = static_cast<ushort>(((first >> 48) & 0x0fffU) | 0x4000U);
    const auto variant = static_cast<uchar>((byte(0) & 0x3fU) | 0x80U);
    return QUuid(static_cast<uint>(first), static_cast<ushort>(first >> 32), version, variant, byte(1), byte(2),
                 byte(3), byte(4), byte(5), byte(6), byte(7));
}

} // namespace brellin
