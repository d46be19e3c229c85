// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <gumbo.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

// An element of a page; valid as long as the page.
class HtmlElement final {
  public:
    explicit HtmlElement(const GumboNode* node) noexcept : m_node(node) {}

    bool has(const char* attribute) const noexcept;
    // The value with its entities decoded; empty when there is no such attribute.
    std::string_view attribute(const char* name) const noexcept;
    // Of its tag in the source, from 1; 1 for a tag that the parser added.
    std::size_t line() const noexcept;
    // Of the first text in it, or of the tag.
    std::size_t textLine() const noexcept;
    // All text in it, each run of white space as one blank, none at the ends. Reads no further than it takes
    // to have more than `most` bytes.
    std::string text(std::size_t most = std::string::npos) const;
    // The same as it is written.
    std::string rawText() const;

  private:
    const GumboNode* m_node;
};

// A page as a browser's parser reads it. What is inside SVG, MathML and templates is left out. Bytes that are
// not UTF-8 are read as Latin-1.
// Hostile pages cost bounded time and memory: one over 16 MiB, with elements nested far deeper than a browser
// follows, with hundreds of attributes in a tag, or whose tree outgrows its text, is not parsed.
class HtmlPage final {
  public:
    static constexpr std::size_t kLargest = 16u * 1024 * 1024;

    explicit HtmlPage(std::string_view html);
    ~HtmlPage();
    HtmlPage(const HtmlPage&) = delete;
    HtmlPage& operator=(const HtmlPage&) = delete;

    // Why the page was not parsed; empty if it was. Then it has no elements.
    const std::string& problem() const noexcept { return m_problem; }
    // In the order of the source.
    const std::vector<HtmlElement>& elements(GumboTag tag) const noexcept {
        return m_elements[static_cast<std::size_t>(tag)];
    }
    // What a reader sees of the body: each block on a line of its own.
    std::string visibleText() const;

  private:
    class Arena;

    void parse();
    void collect();

    std::string m_text;
    std::unique_ptr<Arena> m_arena;
    const GumboNode* m_document = nullptr;
    std::array<std::vector<HtmlElement>, GUMBO_TAG_LAST + 1> m_elements;
    std::string m_problem;
};

}  // namespace relay
