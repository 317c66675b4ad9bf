#pragma once

#include <string>
#include <string_view>

namespace brellin::test {

/// A one-page PDF containing `text` (Latin-1, without parentheses and backslashes).
std::string smallPdf(std::string_view text);

} // namespace brellin::test
