#include "jet/JetText.h"

#include <array>
#include <cstdio>

namespace quorvik
{

namespace
{

/** The characters of the bytes 0x80 to 0x9F; all others are their own number. */
constexpr std::array<char16_t, 32> Upper = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                            0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                            0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                            0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

} // namespace

std::string Utf8Of(std::string_view text1252)
{
    std::string utf8;
    for (const char each : text1252) {
        const unsigned byte = static_cast<unsigned char>(each);
        const unsigned character = byte >= 0x80 && byte < 0xA0 ? Upper[byte - 0x80] : byte;
        if (character < 0x80) {
            utf8 += char(character);
            continue;
        }
        if (character < 0x800) {
            utf8 += char(0xC0 | character >> 6);
        } else {
            utf8 += char(0xE0 | character >> 12);
            utf8 += char(0x80 | (character >> 6 & 0x3F));
        }
        utf8 += char(0x80 | (character & 0x3F));
    }
    return utf8;
}

std::string JsonText(std::string_view utf8)
{
    std::string text = "\"";
    for (const char each : utf8) {
        const unsigned byte = static_cast<unsigned char>(each);
        if (byte < 0x20) {
            std::array<char, 8> escaped = {};
            std::snprintf(escaped.data(), escaped.size(), "\\u%04x", byte);
            text += escaped.data();
            continue;
        }
        if (each == '"' || each == '\\')
            text += '\\';
        text += each;
    }
    return text + '"';
}

} // namespace quorvik
