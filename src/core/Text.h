// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Work on text as bytes: one byte, one character, no code page. "Without regard to case" folds A to Z only,
// so bytes above 127 compare as they stand.
namespace relay {

inline constexpr std::size_t npos = std::string_view::npos;

// Offset of the first needle at or after `from`, or npos. An empty needle is found at `from`
// (npos when from > hay.size()). Never allocates; the fastest path the processor has is chosen at run time.
std::size_t findNoCase(std::string_view hay, std::string_view needle, std::size_t from = 0) noexcept;
// The same rule in plain C++, for processors without vector registers and as the tests' yardstick.
std::size_t findNoCasePortable(std::string_view hay, std::string_view needle, std::size_t from = 0) noexcept;

bool containsNoCase(std::string_view hay, std::string_view needle) noexcept;
bool equalsNoCase(std::string_view a, std::string_view b) noexcept;
bool startsWithNoCase(std::string_view text, std::string_view start) noexcept;
bool endsWithNoCase(std::string_view text, std::string_view end) noexcept;
// Order of two texts without regard to case: negative, 0 or positive.
int compareNoCase(std::string_view a, std::string_view b) noexcept;

std::string toUpper(std::string_view text);
std::string toLower(std::string_view text);

// Blanks (0x20) only, as everywhere in this program; tabs and line breaks stay.
std::string_view trim(std::string_view text) noexcept;
std::string_view trimLeft(std::string_view text) noexcept;
std::string_view trimRight(std::string_view text) noexcept;

// Every occurrence of `what`, in one pass from the left, with regard to case. An empty `what` changes
// nothing.
std::string replaceAll(std::string_view text, std::string_view what, std::string_view with);

// The text before the first CR or LF: what may stand on one line of a file.
std::string_view firstLine(std::string_view text) noexcept;

// The leading decimal number of the text (blanks before it passed over, sign and fraction allowed);
// 0 when there is none.
double leadingNumber(std::string_view text) noexcept;
// leadingNumber rounded to the nearest integer (half to even), held to the range of 32 bits.
int leadingInteger(std::string_view text) noexcept;
// A number that must fit 16 signed bits: throws Failure "Overflow" when it does not.
std::int16_t toInt16(double value);

// "keep the first n characters"; n beyond the end keeps all.
std::string_view left(std::string_view text, std::size_t n) noexcept;

std::string GetToken(std::string_view text, char delimiter, int n);
std::string CleanLineBreaks(std::string_view text);
// Splits at the first pipe: `text` keeps what stands before it, `rest` gets what stands behind it or nothing.
void SplitAtPipe(std::string& text, std::string& rest);
std::string StripHTML(std::string_view html);
// The text before the first NUL.
std::string CutAtNull(std::string_view text);

// The first character of a text read as UTF-8: its code and its length in bytes. The length is 0 for an empty
// text and for one that does not begin with valid UTF-8 (overlong forms, surrogates and codes over U+10FFFF
// are not valid).
struct Utf8Character final {
    char32_t code = 0;
    std::size_t length = 0;
};
Utf8Character firstUtf8Character(std::string_view text) noexcept;

// The one test for characters that a terminal, a log or a table must not get as they stand: they command the
// terminal, break the line, or turn the direction of what follows. Controls (U+0000 to U+001F, U+007F to
// U+009F), line and paragraph separators, marks of direction, interlinear marks.
bool isControlCharacter(char32_t code) noexcept;
// Offset of the first such character at or after `from`, or npos. A byte 0x80 to 0x9F outside valid UTF-8 is
// one too, as some terminals obey it; other bytes outside UTF-8 are not.
std::size_t findControlCharacter(std::string_view text, std::size_t from = 0) noexcept;
// Every byte of each such character as \xNN, all else as it stands: a name from a file, a page or a server as
// a part of one line.
std::string escapeControlCharacters(std::string_view text);

// True for a byte below 0x20, or 0x7F: what no request line, log line or file name may hold.
bool isControlByte(char byte) noexcept;
bool hasControlByte(std::string_view text) noexcept;

int hexDigit(char c) noexcept;  // its value, or -1 for any other character
// Appends the byte as two hex digits.
void appendHex(std::string& out, char byte, std::string_view digits = "0123456789ABCDEF");

// CRC-32 as in ZIP and PNG files.
std::uint32_t crc32(std::string_view bytes) noexcept;

// Base64 of the bytes in blocks of 54; a last group of one byte is filled with a blank, not with zero bits,
// which is what servers have always received from this program.
std::string Base64Encode(std::string_view text);

}  // namespace relay
