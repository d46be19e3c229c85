// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetools/HtmlPage.h"

#include "core/Text.h"

#include <algorithm>
#include <csetjmp>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace relay {

namespace {

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        // Most text is ASCII.
        if (static_cast<unsigned char>(text.front()) < 0x80) {
            text.remove_prefix(1);
            continue;
        }
        const std::size_t length = firstUtf8Character(text).length;
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

std::string fromLatin1(std::string_view text) {
    std::string converted;
    converted.reserve(text.size() + text.size() / 8);
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            converted += c;
        } else {
            converted += static_cast<char>(0xC0 | (byte >> 6));
            converted += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return converted;
}

const GumboVector* childrenOf(const GumboNode* node) {
    if (node->type == GUMBO_NODE_ELEMENT) return &node->v.element.children;
    return node->type == GUMBO_NODE_DOCUMENT ? &node->v.document.children : nullptr;
}

enum class Step { Into, Past, Stop };

// Calls `enter` for every node below the root, itself included, in the order of the source, until one says
// Stop, and `leave` when the children of a node that was gone into are through. Never recurses, as pages nest
// as they like.
template <typename Enter, typename Leave>
void walk(const GumboNode* root, Enter&& enter, Leave&& leave) {
    if (root == nullptr || enter(root) != Step::Into) return;
    std::vector<std::pair<const GumboNode*, unsigned>> open = {{root, 0}};
    while (!open.empty()) {
        const auto [node, place] = open.back();
        const GumboVector* const children = childrenOf(node);
        if (children == nullptr || place >= children->length) {
            leave(node);
            open.pop_back();
            continue;
        }
        ++open.back().second;
        const auto* const child = static_cast<const GumboNode*>(children->data[place]);
        const Step step = enter(child);
        if (step == Step::Stop) return;
        if (step == Step::Into) open.emplace_back(child, 0);
    }
}

bool isText(const GumboNode* node) {
    return node->type == GUMBO_NODE_TEXT || node->type == GUMBO_NODE_WHITESPACE ||
           node->type == GUMBO_NODE_CDATA;
}

bool isOwn(const GumboNode* node) {
    return node->type == GUMBO_NODE_ELEMENT && node->v.element.tag_namespace == GUMBO_NAMESPACE_HTML;
}

bool isInline(GumboTag tag) {
    constexpr std::array kInline = {
        GUMBO_TAG_A,    GUMBO_TAG_ABBR,  GUMBO_TAG_B,    GUMBO_TAG_BDI,    GUMBO_TAG_BDO,
        GUMBO_TAG_BIG,  GUMBO_TAG_CITE,  GUMBO_TAG_CODE, GUMBO_TAG_DFN,    GUMBO_TAG_EM,
        GUMBO_TAG_FONT, GUMBO_TAG_I,     GUMBO_TAG_KBD,  GUMBO_TAG_MARK,   GUMBO_TAG_Q,
        GUMBO_TAG_S,    GUMBO_TAG_SMALL, GUMBO_TAG_SPAN, GUMBO_TAG_STRONG, GUMBO_TAG_SUB,
        GUMBO_TAG_SUP,  GUMBO_TAG_TT,    GUMBO_TAG_U,    GUMBO_TAG_VAR,    GUMBO_TAG_WBR};
    return std::find(kInline.begin(), kInline.end(), tag) != kInline.end();
}

// Stops when there is more than `most`.
void appendOnOneLine(std::string& out, std::string_view text, std::size_t most = npos) {
    for (const char c : text) {
        if (out.size() > most) return;
        const bool blank = c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
        if (!blank)
            out += c;
        else if (!out.empty() && out.back() != ' ' && out.back() != '\n')
            out += ' ';
    }
}

}  // namespace

// The parser's memory: taken in large pieces and given back at once, which is faster than node by node and
// cannot exhaust the stack. The parser knows no failure, so what a page may cost ends here, too: leave()
// jumps out of it. That skips no destructor, as the parser is C, and loses nothing, as all it holds is memory
// of this arena.
class HtmlPage::Arena final {
  public:
    explicit Arena(std::size_t limit) : m_limit(limit) {}
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;
    ~Arena() {
        for (std::size_t i = 0; i < m_count; ++i) std::free(m_pieces[i].memory);
    }

    static void* allocate(void* self, std::size_t size) { return static_cast<Arena*>(self)->take(size); }
    static void release(void* self, void* memory) { static_cast<Arena*>(self)->drop(memory); }

    std::jmp_buf m_exit;
    const char* m_problem = nullptr;  // after the jump

  private:
    struct Piece final {
        char* memory = nullptr;
        std::size_t size = 0;
    };
    static constexpr std::size_t kUnit = 16;
    // The places of a list that is too long. What open elements and attributes cost the parser grows with the
    // square of their number, attributes of the same name even with its cube. As lists double, half of this
    // is always allowed.
    static constexpr std::size_t kLongList = 2500;
    static constexpr std::size_t kLongAttributes = 500;

    void* take(std::size_t size) {
        m_places = size / sizeof(void*);
        size = (std::max(size, kUnit) + kUnit - 1) / kUnit * kUnit;
        if (size > m_left) grow(size);
        void* const place = m_next;
        m_next += size;
        m_left -= size;
        return place;
    }
    void grow(std::size_t size) {
        constexpr std::size_t kPiece = std::size_t{256} * 1024;
        const std::size_t piece = std::max({size, kPiece, std::min(m_taken, 64 * kPiece)});
        // Places enough for the limit: pieces grow with what was taken.
        if (piece > m_limit - m_taken || m_count == m_pieces.size()) leave(kTooLarge);
        auto* const memory = static_cast<char*>(std::malloc(piece));
        if (memory == nullptr) leave(kTooLarge);
        m_pieces[m_count++] = {memory, piece};
        m_taken += piece;
        m_next = memory;
        m_left = piece;
    }

    // A list of the parser grows by a block twice as large, into which it is copied before its old one is
    // dropped. Of long lists, only the children of one node are harmless.
    void drop(const void* memory) {
        const std::size_t places = std::exchange(m_places, 0);
        if (places < kLongAttributes || memory == nullptr) return;
        const void* entries[2];
        std::memcpy(entries, memory, sizeof entries);
        if (!isOwn(entries[0]) || !isOwn(entries[1])) return;  // text
        const auto* const first = static_cast<const GumboNode*>(entries[0]);
        const auto* const second = static_cast<const GumboNode*>(entries[1]);
        // An attribute begins with the number 0, as no node in a list does, and goes on with its name.
        if (first->type == GUMBO_NODE_DOCUMENT) leave("The page has a tag with hundreds of attributes");
        if (places >= kLongList && first->parent != second->parent)
            leave("The page's elements are nested too deep");
    }
    bool isOwn(const void* place) const {
        const auto address = reinterpret_cast<std::uintptr_t>(place);
        return address % kUnit == 0 &&
               std::any_of(m_pieces.begin(), m_pieces.begin() + m_count, [address](const Piece& piece) {
                   return address - reinterpret_cast<std::uintptr_t>(piece.memory) < piece.size;
               });
    }
    [[noreturn]] void leave(const char* problem) {
        m_problem = problem;
        std::longjmp(m_exit, 1);
    }

    static constexpr const char* kTooLarge = "The page's elements take too much memory";

    std::array<Piece, 256> m_pieces{};
    std::size_t m_count = 0;
    std::size_t m_limit;
    std::size_t m_taken = 0;
    char* m_next = nullptr;
    std::size_t m_left = 0;
    std::size_t m_places = 0;  // that the last block would have as a list
};

bool HtmlElement::has(const char* attribute) const noexcept {
    return gumbo_get_attribute(&m_node->v.element.attributes, attribute) != nullptr;
}

std::string_view HtmlElement::attribute(const char* name) const noexcept {
    const GumboAttribute* const found = gumbo_get_attribute(&m_node->v.element.attributes, name);
    return found == nullptr ? std::string_view() : found->value;
}

std::size_t HtmlElement::line() const noexcept {
    return m_node->v.element.original_tag.length == 0 ? 1 : m_node->v.element.start_pos.line;
}

std::size_t HtmlElement::textLine() const noexcept {
    const GumboVector& children = m_node->v.element.children;
    if (children.length == 0) return line();
    const auto* const first = static_cast<const GumboNode*>(children.data[0]);
    return isText(first) ? first->v.text.start_pos.line : line();
}

std::string HtmlElement::text(std::size_t most) const {
    std::string text;
    const auto enter = [&text, most](const GumboNode* node) {
        if (isText(node)) appendOnOneLine(text, node->v.text.text, most);
        if (text.size() > most) return Step::Stop;
        return childrenOf(node) != nullptr ? Step::Into : Step::Past;
    };
    walk(m_node, enter, [](const GumboNode*) {});
    if (text.ends_with(' ')) text.pop_back();
    return text;
}

std::string HtmlElement::rawText() const {
    std::string text;
    const auto enter = [&text](const GumboNode* node) {
        if (isText(node)) text += node->v.text.text;
        return childrenOf(node) != nullptr ? Step::Into : Step::Past;
    };
    walk(m_node, enter, [](const GumboNode*) {});
    return text;
}

HtmlPage::HtmlPage(std::string_view html) {
    if (html.size() > kLargest) {
        m_problem = "The page is larger than 16 MB";
        return;
    }
    m_text = isUtf8(html) ? std::string(html) : fromLatin1(html);
    parse();
    collect();
}

HtmlPage::~HtmlPage() = default;

void HtmlPage::parse() {
    constexpr std::size_t kLeast = std::size_t{32} * 1024 * 1024;
    constexpr std::size_t kPerByte = 100;
    constexpr std::size_t kMost = std::size_t{1024} * 1024 * 1024;
    m_arena = std::make_unique<Arena>(std::min(kLeast + m_text.size() * kPerByte, kMost));
    if (setjmp(m_arena->m_exit) != 0) {
        m_problem = m_arena->m_problem;
        m_arena.reset();
        return;
    }
    GumboOptions options = kGumboDefaultOptions;
    options.allocator = Arena::allocate;
    options.deallocator = Arena::release;
    options.userdata = m_arena.get();
    options.max_errors = 0;
    m_document = gumbo_parse_with_options(&options, m_text.data(), m_text.size())->document;
}

void HtmlPage::collect() {
    const auto enter = [this](const GumboNode* node) {
        if (isOwn(node)) m_elements[node->v.element.tag].emplace_back(node);
        return node->type == GUMBO_NODE_DOCUMENT || isOwn(node) ? Step::Into : Step::Past;
    };
    walk(m_document, enter, [](const GumboNode*) {});
}

std::string HtmlPage::visibleText() const {
    std::string text;
    const auto isHidden = [](GumboTag tag) {
        return tag == GUMBO_TAG_HEAD || tag == GUMBO_TAG_SCRIPT || tag == GUMBO_TAG_STYLE;
    };
    const auto breakLine = [&text](const GumboNode* node) {
        if (!isOwn(node) || isInline(node->v.element.tag)) return;
        if (text.ends_with(' ')) text.pop_back();
        if (!text.empty() && text.back() != '\n') text += '\n';
    };
    const auto enter = [&](const GumboNode* node) {
        if (isText(node)) {
            appendOnOneLine(text, node->v.text.text);
            return Step::Past;
        }
        if (node->type != GUMBO_NODE_DOCUMENT && (!isOwn(node) || isHidden(node->v.element.tag)))
            return Step::Past;
        breakLine(node);
        return Step::Into;
    };
    walk(m_document, enter, breakLine);
    return text;
}

}  // namespace relay
