#pragma once

#include <string>
#include <string_view>

namespace brellin::test {

/// A PDF file of one page that says `text` (Latin 1, without brackets and backslashes).
std::string smallPdf(std::string_view text);

} // namespace brellin::test
