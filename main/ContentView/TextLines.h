#pragma once

#include <QByteArray>
#include <QStringDecoder>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace brellin {

/// Splits the content of a text file into lines while it is being read. UTF-16 becomes UTF-8, and so do lines that are
/// no UTF-8, which count as Latin-1.
class TextLines {
public:
    /// Called for each line; false ends the reading.
    using Each = std::function<bool(std::string_view line, std::int64_t number)>;

    /// `beginning` decides about the encoding. Lines of more than 64 KiB are passed on in parts, which overlap by
    /// `overlap` bytes.
    TextLines(const QByteArray &beginning, std::size_t overlap, Each each);

    /// Whether the beginning is text at all.
    bool isText() const { return m_isText; }
    /// Adds the next bytes, first of all the beginning again; false if ended by `Each`.
    bool add(std::string_view bytes);
    /// Passes on the last line.
    bool end();

private:
    bool addBytes(std::string_view bytes);
    bool passOn(std::string_view line);
    bool passOnPart();

    const std::size_t m_overlap;
    const Each m_each;
    bool m_isText = false;
    std::unique_ptr<QStringDecoder> m_decoder; ///< null for bytes
    std::string m_rest;                        ///< a line whose end was not read yet
    std::int64_t m_number = 1;
};

} // namespace brellin
