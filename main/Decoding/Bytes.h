#pragma once

#include <QByteArrayView>

#include <algorithm>

#include <bit>
#include <cstdint>
#include <string_view>

namespace brellin {

/// Bounds-checked access to untrusted bytes: reading beyond the end gives 0.
class Bytes {
public:
    explicit Bytes(QByteArrayView bytes, std::endian order = std::endian::big) : m_bytes(bytes), m_order(order) {}

    qsizetype size() const { return m_bytes.size(); }
    bool has(qsizetype at, std::string_view text) const
    {
        const auto length = static_cast<qsizetype>(text.size());
        return at >= 0 && at <= size() - length && std::string_view(m_bytes.data() + at, text.size()) == text;
    }
    std::uint64_t number(qsizetype at, int length) const
    {
        std::uint64_t value = 0;
        if (at < 0 || at > size() - length)
            return 0;
        for (int i = 0; i < length; ++i) {
            const qsizetype place = m_order == std::endian::big ? at + i : at + length - 1 - i;
            value = value << 8U | static_cast<unsigned char>(m_bytes[place]);
        }
        return value;
    }
    std::uint16_t number16(qsizetype at) const { return static_cast<std::uint16_t>(number(at, 2)); }
    std::uint32_t number32(qsizetype at) const { return static_cast<std::uint32_t>(number(at, 4)); }
    std::uint64_t number64(qsizetype at) const { return number(at, 8); }
    /// At most `length` bytes from `at`.
    QByteArrayView part(qsizetype at, qsizetype length) const
    {
        if (at < 0 || at >= size() || length <= 0)
            return {};
        return m_bytes.sliced(at, std::min(length, size() - at));
    }

private:
    QByteArrayView m_bytes;
    std::endian m_order;
};

} // namespace brellin
