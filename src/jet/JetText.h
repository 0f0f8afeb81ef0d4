#pragma once

#include <string>
#include <string_view>

namespace quorvik
{

/** Text of code page 1252 in UTF-8. The five bytes that have no character there become the control characters
 * of the same number, as they did in the programs of that time. */
std::string Utf8Of(std::string_view text1252);

/** A text in UTF-8 as a text of JSON, its quotes included. */
std::string JsonText(std::string_view utf8);

} // namespace quorvik
