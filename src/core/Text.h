// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Functions on text as bytes: one byte, one character, no code page. "Without regard to case" folds A to Z
// only; bytes above 127 compare as they are.
namespace relay {

inline constexpr std::size_t npos = std::string_view::npos;

// Offset of the first needle at or after `from`, or npos. An empty needle is found at `from` (npos when from
// > hay.size()). Never allocates; picks the fastest code for the processor at run time.
std::size_t findNoCase(std::string_view hay, std::string_view needle, std::size_t from = 0) noexcept;
// The same in plain C++, for processors without vector registers and for tests to compare with.
std::size_t findNoCasePortable(std::string_view hay, std::string_view needle, std::size_t from = 0) noexcept;

// Offset of the last needle, or npos. An empty needle is found at the end.
std::size_t rfindNoCase(std::string_view hay, std::string_view needle) noexcept;

bool containsNoCase(std::string_view hay, std::string_view needle) noexcept;
bool equalsNoCase(std::string_view a, std::string_view b) noexcept;
bool startsWithNoCase(std::string_view text, std::string_view start) noexcept;
bool endsWithNoCase(std::string_view text, std::string_view end) noexcept;
// Order of two texts without regard to case: negative, 0 or positive.
int compareNoCase(std::string_view a, std::string_view b) noexcept;

std::string toUpper(std::string_view text);
std::string toLower(std::string_view text);

// Removes blanks (0x20) only; tabs and line breaks stay.
std::string_view trim(std::string_view text) noexcept;
std::string_view trimLeft(std::string_view text) noexcept;
std::string_view trimRight(std::string_view text) noexcept;

// Replaces every occurrence of `what` in one pass from the left, case-sensitively. An empty `what` changes
// nothing.
std::string replaceAll(std::string_view text, std::string_view what, std::string_view with);
// The same without regard to case.
std::string replaceAllNoCase(std::string_view text, std::string_view what, std::string_view with);

// The text before the first CR or LF.
std::string_view firstLine(std::string_view text) noexcept;

// The leading decimal number of the text, after any blanks, with optional sign and fraction; 0 if there is
// none.
double leadingNumber(std::string_view text) noexcept;
// leadingNumber rounded to the nearest integer (half to even), limited to 32 bits.
int leadingInteger(std::string_view text) noexcept;
// Throws Failure "Overflow" when the value does not fit.
std::int16_t toInt16(double value);

// The first n characters, or all if there are fewer.
std::string_view left(std::string_view text, std::size_t n) noexcept;

std::string GetToken(std::string_view text, char delimiter, int n);
// The text on one line.
std::string CleanLineBreaks(std::string_view text);
void cleanLineBreaks(std::string& text);  // in place
// Splits at the first pipe: `text` keeps what comes before it, `rest` receives what comes after it, or
// nothing.
void SplitAtPipe(std::string& text, std::string& rest);
std::string StripHTML(std::string_view html);
// The text before the first NUL.
std::string CutAtNull(std::string_view text);

// The first character of a text read as UTF-8: its code and its length in bytes. The length is 0 for an empty
// text and for one that does not begin with valid UTF-8 (overlong forms, surrogates and codes over U+10FFFF
// are invalid).
struct Utf8Character final {
    char32_t code = 0;
    std::size_t length = 0;
};
Utf8Character firstUtf8Character(std::string_view text) noexcept;

// How many characters a reader sees: a byte outside valid UTF-8 is one.
std::size_t characterCount(std::string_view text) noexcept;

// True for characters that must not reach a terminal, a log or a table unescaped, because they control the
// terminal, break the line or change the text direction: controls (U+0000 to U+001F, U+007F to U+009F), line
// and paragraph separators, direction marks, interlinear marks.
bool isControlCharacter(char32_t code) noexcept;
// Offset of the first such character at or after `from`, or npos. A byte 0x80 to 0x9F outside valid UTF-8
// counts too, as some terminals obey it; other bytes outside UTF-8 do not.
std::size_t findControlCharacter(std::string_view text, std::size_t from = 0) noexcept;
// Writes every byte of each such character as \xNN, so that a name from a file, a page or a server can be
// part of one line.
std::string escapeControlCharacters(std::string_view text);

// True for 0x7F and bytes below 0x20, which no request line, log line or file name may hold.
bool isControlByte(char byte) noexcept;
bool hasControlByte(std::string_view text) noexcept;

int hexDigit(char c) noexcept;  // its value, or -1 for any other character
// Appends the byte as two hex digits.
void appendHex(std::string& out, char byte, std::string_view digits = "0123456789ABCDEF");

// CRC-32 as in ZIP and PNG files.
std::uint32_t crc32(std::string_view bytes) noexcept;

// Base64 in blocks of 54 bytes. A last group of one byte is padded with a blank instead of zero bits, as
// servers have always received it.
std::string Base64Encode(std::string_view text);

}  // namespace relay
