// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetools/MetaTags.h"

#include "core/Text.h"
#include "pagetools/PageText.h"

#include <algorithm>

namespace relay {

namespace {

constexpr std::string_view kBreak = "\r\n";
constexpr std::string_view kHead = "<head>";
constexpr std::string_view kHeadEnd = "</head>";
constexpr std::string_view kHtml = "<html>";
constexpr std::string_view kTitle = "<title>";
constexpr std::string_view kTitleEnd = "</title>";

// The word's next place in a page that is read from front to back: each stretch is searched once.
class WordAhead final {
  public:
    WordAhead(std::string_view html, std::string_view word) : m_html(html), m_word(word) {}

    // The first place at or after `from`, or npos; `from` never goes back.
    std::size_t at(std::size_t from) {
        if (!m_searched || m_at < from) m_at = findNoCase(m_html, m_word, from);
        m_searched = true;
        return m_at;
    }
    // Whether the word is in the text from `first` to before `end`.
    bool isIn(std::size_t first, std::size_t end) {
        const std::size_t found = at(first);
        return found != npos && found + m_word.size() <= end;
    }

  private:
    std::string_view m_html;
    std::string_view m_word;
    std::size_t m_at = 0;
    bool m_searched = false;
};

// The value of a tag's "content" and what is in front of it. They stay when the next tag has none.
struct Content final {
    std::string_view namePart;
    std::string_view value;
};

void readContent(std::string_view tag, Content& content) {
    const std::size_t at = findNoCase(tag, "content");
    if (at == npos) return;
    content.namePart = tag.substr(0, at);
    const std::size_t sign = tag.find('=', at);
    if (sign == npos) return;
    std::string_view value = trim(tag.substr(sign + 1));
    if (value.starts_with('"')) value.remove_prefix(1);
    if (value.ends_with('"')) value.remove_suffix(1);
    content.value = value;
}

// Reads the tags of a page from front to back. The working copy is what follows m_start.
class PageReader final {
  public:
    PageReader(std::string_view html, PageTexts& page)
        : m_html(html),
          m_page(page),
          m_meta(html, "meta"),
          m_title(html, "title"),
          m_option(html, "option"),
          m_endOfScript(html, "</script>") {}

    void readTags() {
        m_page.body.clear();
        std::string body;
        findTag();
        while (m_tag != npos) {
            if (isScript()) {
                passScript();
                continue;
            }
            const std::size_t first = m_tag + 1;
            const std::size_t end = m_html.find('>', first);
            if (end == npos) break;
            position(end);
            m_start = end + 1;
            if (m_meta.isIn(first, end)) readMeta(m_html.substr(first, end - first));
            findTag();
            const bool shown = !m_title.isIn(first, end) && !m_option.isIn(first, end);
            if (m_tag != npos && shown) body.append(m_html.substr(m_start, m_tag - m_start));
        }
        cleanLineBreaks(body);
        body.erase(trimRight(body).size());
        body.erase(0, body.size() - trimLeft(body).size());
        m_page.body = std::move(body);
    }

    void readTitle() {
        const std::size_t first = findNoCase(m_html, kTitle);
        if (first != npos) pagePosition(first + 1);
        const std::size_t end = findNoCase(m_html, kTitleEnd);
        if (end != npos) pagePosition(end + 1);
        if (first == npos || end == npos || end < first) return;
        const std::size_t text = first + kTitle.size();
        m_page.tags.title = m_html.substr(text, end - text);
    }

  private:
    bool isScript() const {
        const std::string_view tag = m_html.substr(m_tag + 1);
        return !tag.empty() && (tag.front() == 's' || tag.front() == 'S') && startsWithNoCase(tag, "script");
    }

    // Checks a place's position in the working copy.
    void position(std::size_t place) const { pagePosition(place - m_start + 1); }

    void findTag() {
        m_tag = m_html.find('<', m_start);
        if (m_tag != npos) position(m_tag);
    }

    void passScript() {
        constexpr std::size_t kEnd = 9;  // of "</script>"
        constexpr std::size_t kStep = 8;
        const std::size_t end = m_endOfScript.at(m_tag + 1 + 6);
        if (end != npos) {
            position(end);
            m_start = end + kEnd;
        } else {
            // The working copy loses eight characters again and again until the tag is gone.
            const std::size_t steps = (m_tag - m_start) / kStep + 1;
            m_start = std::min(m_start + steps * kStep, m_html.size());
        }
        findTag();
    }

    void readMeta(std::string_view tag) {
        if (!containsNoCase(tag, "description") && !containsNoCase(tag, "keywords")) return;
        readContent(tag, m_content);
        const bool keywords = containsNoCase(m_content.namePart, "keywords");
        (keywords ? m_page.tags.keywords : m_page.tags.description) = m_content.value;
    }

    std::string_view m_html;
    PageTexts& m_page;
    WordAhead m_meta;
    WordAhead m_title;
    WordAhead m_option;
    WordAhead m_endOfScript;
    std::size_t m_start = 0;
    std::size_t m_tag = npos;
    Content m_content;
};

int endOf(int position, std::string_view marker) {
    return position + static_cast<int>(marker.size());
}

std::string metaTag(std::string_view name, std::string_view content) {
    return std::string("<meta name=\"").append(name).append("\" content=\"").append(content).append("\">");
}

// The texts of a change as they go into a page.
struct NewTags final {
    explicit NewTags(const MetaTags& tags)
        : title(CleanLineBreaks(tags.title)),
          keywords(CleanLineBreaks(tags.keywords)),
          description(CleanLineBreaks(tags.description)),
          titleElement(std::string(kTitle) + title + std::string(kTitleEnd)),
          keywordsTag(metaTag("keywords", keywords)),
          descriptionTag(metaTag("description", description)) {}

    std::string title;
    std::string keywords;
    std::string description;
    std::string titleElement;
    std::string keywordsTag;
    std::string descriptionTag;
};

// Which tags of a page were met.
struct Met final {
    bool keywords = false;
    bool description = false;
};

class Inserter final {
  public:
    Inserter(PageText& page, const NewTags& tags) : m_page(page), m_tags(tags) {}

    void insert() {
        if (m_page.find(kHead) == 0) {
            insertHead();
            return;
        }
        insertTitle();
        const Met met = insertIntoTags();
        if (!met.description) insertBehindHead(m_tags.descriptionTag + std::string(kBreak));
        if (!met.keywords) insertBehindHead(m_tags.keywordsTag + std::string(kBreak));
    }

  private:
    void insertHead() {
        const int html = m_page.find(kHtml);
        if (html == 0) return;
        std::string head(kHead);
        head.append(m_tags.titleElement).append(kBreak).append(m_tags.keywordsTag).append(kBreak);
        head.append(m_tags.descriptionTag).append(kBreak).append(kHeadEnd);
        m_page.insert(endOf(html, kHtml), head);
    }

    void insertTitle() {
        const int title = m_page.find(kTitle);
        const int end = m_page.find(kTitleEnd);
        if (title > 0 && end > 0)
            m_page.insert(endOf(title, kTitle), m_tags.title);
        else
            insertBehindHead(m_tags.titleElement);
    }

    void insertBehindHead(std::string_view text) { m_page.insert(endOf(m_page.find(kHead), kHead), text); }

    // Puts the new texts in front of the old ones. An inserted text is walked over too.
    Met insertIntoTags() {
        Met met;
        for (int p = m_page.find("<"); p > 0; p = m_page.find("<", p + 1)) {
            const int q = m_page.find(">", p + 4);
            if (q == 0) continue;
            const std::string_view tag = m_page.between(p, q + 1);
            if (containsNoCase(tag, "body") || equalsNoCase(tag, kHeadEnd)) break;
            if (!containsNoCase(tag, "meta")) continue;
            const bool keywords = containsNoCase(tag, "keywords");
            const bool description = containsNoCase(tag, "description");
            met.keywords = met.keywords || keywords;
            met.description = met.description || description;
            if (keywords || description)
                insertIntoContent(p, description ? m_tags.description : m_tags.keywords);
        }
        return met;
    }

    void insertIntoContent(int tag, const std::string& value) {
        const int content = m_page.find("content", tag + 1);
        if (content == 0) return;
        if (const int quote = m_page.find("\"", content); quote > 0)
            m_page.insert(quote + 1, value);
        else if (const int sign = m_page.find("=", content); sign > 0)
            m_page.insert(sign + 1, value + ",");
    }

    PageText& m_page;
    const NewTags& m_tags;
};

class Replacer final {
  public:
    Replacer(PageText& page, const NewTags& tags) : m_page(page), m_tags(tags) {}

    void replace(bool titleOnTop) {
        const Met built = replaceTags();
        if (const int head = m_page.find(kHead); head > 0) {
            if (!built.description) insertInHead(head, m_tags.descriptionTag);
            if (!built.keywords) insertInHead(head, m_tags.keywordsTag);
        } else {
            makeHead(built);
        }
        joinParagraphs();
        replaceTitle(titleOnTop);
    }

  private:
    Met replaceTags() {
        Met built;
        std::string name;
        for (int p = m_page.find("<"); p > 0; p = m_page.find("<", p + 1)) {
            const int q = m_page.find(">", p + 4);
            if (q == 0) continue;
            const std::string_view tag = m_page.between(p, q + 1);
            const bool last =
                containsNoCase(tag, "body") || equalsNoCase(tag, kHeadEnd) || equalsNoCase(tag, "</html>");
            if (containsNoCase(tag, "meta") && containsNoCase(tag, "name")) {
                readName(tag, name);
                replaceTag(p, q + 1, name, built);
            }
            if (last) break;
        }
        return built;
    }

    void replaceTag(int first, int end, std::string_view name, Met& built) {
        if (equalsNoCase(name, "keywords")) {
            m_page.replace(first, end, m_tags.keywordsTag);
            built.keywords = true;
        } else if (equalsNoCase(name, "description")) {
            m_page.replace(first, end, m_tags.descriptionTag);
            built.description = true;
        }
    }

    // A tag without "content" behind "name" keeps the name of the tag before it.
    static void readName(std::string_view tag, std::string& name) {
        const std::size_t text = findNoCase(tag, "name") + 4;
        const std::size_t content = findNoCase(tag, "content", text - 4);
        if (content == npos || content <= text) return;
        name = tag.substr(text, content - text);
        std::erase_if(name, [](char c) { return c == '=' || c == '"'; });
        name = trim(CleanLineBreaks(name));
    }

    // Behind the character that follows the "<head>", which is doubled: where the "<head>" ends a line, its
    // carriage return stays in front of the tag.
    void insertInHead(int head, std::string_view tag) {
        const int behind = endOf(head, kHead);
        std::string text(tag);
        text.append(m_page.between(behind, behind + 1));
        m_page.insert(behind + 1, text);
    }

    // Only tags that the page had before stand in a new head; the others leave an empty line.
    void makeHead(const Met& built) {
        const std::string keywordsTag = built.keywords ? m_tags.keywordsTag : std::string();
        const std::string descriptionTag = built.description ? m_tags.descriptionTag : std::string();
        std::string head(kHead);
        head.append(kBreak).append(keywordsTag).append(kBreak).append(descriptionTag).append(kBreak);
        head.append(kHeadEnd);
        const int html = m_page.find(kHtml);
        if (html == 0) {
            m_page.insert(1, head);
            return;
        }
        // The character behind the "<html>" is doubled.
        const int behind = endOf(html, kHtml);
        head.append(m_page.between(behind, behind + 1));
        m_page.insert(behind + 1, head);
    }

    void joinParagraphs() {
        const int end = m_page.find(kHeadEnd);
        if (end > 0) m_page.replace(1, end, replaceAll(m_page.between(1, end), "\r\n\r\n", ""));
    }

    void replaceTitle(bool onTop) {
        const int title = m_page.find(kTitle);
        const int end = m_page.find(kTitleEnd);
        if (title > 0 && end > 0) {
            if (!onTop) {
                putBetween(endOf(title, kTitle), end, m_tags.title);
                return;
            }
            putBetween(title, endOf(end, kTitleEnd), {});
        }
        const int head = m_page.find(kHead);
        if (head == 0) return;
        std::string line(kBreak);
        line.append(m_tags.titleElement).append(kBreak);
        m_page.insert(endOf(head, kHead), line);
    }

    // The text up to `first`, the new text, and the text from `end` on: where the end is in front, what is
    // between them stays twice.
    void putBetween(int first, int end, std::string_view text) {
        if (end >= first) {
            m_page.replace(first, end, text);
            return;
        }
        std::string twice(text);
        twice.append(m_page.between(end, first));
        m_page.insert(first, twice);
    }

    PageText& m_page;
    const NewTags& m_tags;
};

}  // namespace

void retrieveMetaTag(std::string_view html, PageTexts& page) {
    PageReader reader(html, page);
    reader.readTags();
    reader.readTitle();
}

std::string changedPage(std::string_view html, const MetaTagChange& change) {
    PageText page(html);
    const NewTags tags(change.tags);
    if (change.way == MetaTagChange::Way::Insert)
        Inserter(page, tags).insert();
    else
        Replacer(page, tags).replace(change.titleOnTop);
    return page.asLine();
}

std::string_view htmlSection(std::string_view html, HtmlPart part) {
    if (part == HtmlPart::Whole) return html;
    const bool head = part == HtmlPart::Head;
    const std::string_view start = head ? kHead : "<body";
    const std::string_view end = head ? kHeadEnd : "</body>";
    const std::size_t first = findNoCase(html, start);
    if (first != npos) pagePosition(first + 1);
    if (first == npos && !head) return {};
    const std::size_t last = findNoCase(html, end, head ? 0 : first + start.size());
    if (last != npos) pagePosition(last + 1);
    if (first == npos || last == npos || last < first) return {};
    return html.substr(first, last + end.size() - first);
}

}  // namespace relay
