// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/FormHints.h"

#include "core/Keys.h"
#include "core/Text.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace relay {

namespace {

constexpr std::size_t kMostLabelBytes = 200;

bool isSpace(char c) noexcept {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isWordByte(char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || (c & 0x80) != 0;
}

// The attribute of a tag without its "<" and ">", with the usual rules of quoting.
std::string_view attributeOf(std::string_view tag, std::string_view wanted) {
    std::size_t at = std::min(tag.find_first_of(" \t\r\n\f"), tag.size());
    while (at < tag.size()) {
        while (at < tag.size() && (isSpace(tag[at]) || tag[at] == '/')) ++at;
        const std::size_t start = at;
        while (at < tag.size() && !isSpace(tag[at]) && tag[at] != '=') ++at;
        const std::string_view name = tag.substr(start, at - start);
        while (at < tag.size() && isSpace(tag[at])) ++at;
        std::string_view value;
        if (at < tag.size() && tag[at] == '=') {
            ++at;
            while (at < tag.size() && isSpace(tag[at])) ++at;
            const char quote = at < tag.size() ? tag[at] : ' ';
            if (quote == '"' || quote == '\'') {
                const std::size_t end = std::min(tag.find(quote, at + 1), tag.size());
                value = tag.substr(at + 1, end - at - 1);
                at = end + 1;
            } else {
                const std::size_t from = at;
                while (at < tag.size() && !isSpace(tag[at])) ++at;
                value = tag.substr(from, at - from);
            }
        }
        if (equalsNoCase(name, wanted)) return value;
        if (name.empty() && value.empty()) ++at;
    }
    return {};
}

// Reads one page.
class HintReader final {
  public:
    explicit HintReader(std::string_view html) : m_html(html) {}

    std::vector<FieldHint> read() {
        std::size_t at = 0;
        while (at < m_html.size()) {
            const std::size_t open = m_html.find('<', at);
            takeText(m_html.substr(at, std::min(open, m_html.size()) - at));
            if (open == npos) break;
            const std::size_t close = m_html.find('>', open);
            if (close == npos) break;
            at = takeTag(m_html.substr(open + 1, close - open - 1), close + 1);
        }
        for (Field& field : m_fields) {
            const auto label = m_labels.find(field.id);
            if (!field.id.empty() && label != m_labels.end()) field.hint.label = label->second;
        }
        std::vector<FieldHint> hints;
        for (Field& field : m_fields) hints.push_back(std::move(field.hint));
        return hints;
    }

  private:
    struct Field final {
        FieldHint hint;
        std::string id;
    };

    // Runs of white space become one blank.
    void takeText(std::string_view text) {
        std::string words;
        for (const char c : text.substr(0, std::min(text.size(), 16 * kMostLabelBytes))) {
            if (!isSpace(c))
                words += c;
            else if (!words.empty() && words.back() != ' ')
                words += ' ';
            if (words.size() == kMostLabelBytes) break;
        }
        if (trim(words).empty()) return;
        m_words = trim(words);
        if (m_inLabel && m_label.size() < kMostLabelBytes)
            m_label.append(m_label.empty() ? "" : " ").append(m_words);
    }

    // Gives the place to go on at.
    std::size_t takeTag(std::string_view tag, std::size_t behind) {
        const std::string_view name = tag.substr(0, tag.find_first_of(" \t\r\n/", 1));
        if (equalsNoCase(name, "label")) {
            m_inLabel = true;
            m_label.clear();
            m_labelFor = attributeOf(tag, "for");
        } else if (equalsNoCase(name, "/label")) {
            closeLabel();
        } else if (equalsNoCase(name, "input")) {
            addField(tag);
        } else if (equalsNoCase(name, "textarea") || equalsNoCase(name, "select")) {
            addField(tag);
            return behindEnd(name, behind);
        } else if (equalsNoCase(name, "script") || equalsNoCase(name, "style")) {
            return behindEnd(name, behind);
        }
        return behind;
    }

    // Behind the end tag of an element whose content is no label.
    std::size_t behindEnd(std::string_view name, std::size_t from) {
        const std::string end = "</" + std::string(name);
        const std::size_t place = m_lost.contains(end) ? npos : findNoCase(m_html, end, from);
        if (place == npos) m_lost.insert(end);
        return place == npos ? from : std::min(m_html.find('>', place), m_html.size() - 1) + 1;
    }

    void closeLabel() {
        if (m_inLabel && !m_labelFor.empty()) m_labels.emplace(m_labelFor, left(m_label, kMostLabelBytes));
        if (m_inLabel && m_labelFor.empty() && m_labelled < m_fields.size() && !m_label.empty())
            m_fields[m_labelled].hint.label = left(m_label, kMostLabelBytes);
        m_inLabel = false;
        m_labelled = npos;
    }

    void addField(std::string_view tag) {
        const std::string closed = std::string(tag) + '>';
        std::string name = getFieldValue(closed, "name");
        std::string words;
        words.swap(m_words);
        if (name.empty() || m_fields.size() >= kMostFormFields || !m_names.insert(toLower(name)).second)
            return;
        if (m_inLabel && m_labelled == npos) m_labelled = m_fields.size();
        m_fields.push_back(
            {{std::move(name), std::move(words), std::string(attributeOf(tag, "autocomplete"))},
             std::string(attributeOf(tag, "id"))});
    }

    std::string_view m_html;
    std::vector<Field> m_fields;
    std::unordered_set<std::string> m_names;
    std::unordered_map<std::string, std::string> m_labels;  // by the id of their field
    std::unordered_set<std::string> m_lost;                 // end tags that do not come any more
    std::string m_words;                                    // the last text since the last field
    std::string m_label;                                    // of the open label
    std::string m_labelFor;
    std::size_t m_labelled = npos;  // the field inside the open label
    bool m_inLabel = false;
};

struct Meaning final {
    std::string_view words;
    std::string_view macro;
};

// The first that occurs in the label counts.
constexpr Meaning kLabels[] = {
    {"first name", "<FIRSTNAME>"},
    {"given name", "<FIRSTNAME>"},
    {"forename", "<FIRSTNAME>"},
    {"last name", "<LASTNAME>"},
    {"surname", "<LASTNAME>"},
    {"family name", "<LASTNAME>"},
    {"e mail", "<EMAIL>"},
    {"email", "<EMAIL>"},
    {"mail", "<EMAIL>"},
    {"site title", "<TITLE>"},
    {"site name", "<TITLE>"},
    {"name of the site", "<TITLE>"},
    {"website name", "<TITLE>"},
    {"title", "<TITLE>"},
    {"web address", "<URL>"},
    {"site address", "<URL>"},
    {"url", "<URL>"},
    {"link", "<URL>"},
    {"keywords", "<KEYWORD>"},
    {"keyword", "<KEYWORD>"},
    {"key words", "<KEYWORD>"},
    {"description", "<DESCRIPTION>"},
    {"describe", "<DESCRIPTION>"},
    {"comments", "<DESCRIPTION>"},
    {"comment", "<DESCRIPTION>"},
    {"descr", "<DESCRIPTION>"},
    {"company", "<COMPANY>"},
    {"organisation", "<COMPANY>"},
    {"organization", "<COMPANY>"},
    {"business name", "<COMPANY>"},
    {"password", "<PASSWORD>"},
    {"telephone", "<PHONE>"},
    {"phone", "<PHONE>"},
    {"tel", "<PHONE>"},
    {"fax", "<FAX>"},
    {"zip", "<POSTCODE>"},
    {"postal code", "<POSTCODE>"},
    {"post code", "<POSTCODE>"},
    {"postcode", "<POSTCODE>"},
    {"website", "<URL>"},
    {"web site", "<URL>"},
    {"homepage", "<URL>"},
    {"home page", "<URL>"},
    {"street", "<ADDRESS>"},
    {"address", "<ADDRESS>"},
    {"city", "<CITY>"},
    {"town", "<CITY>"},
    {"suburb", "<CITY>"},
    {"state", "<STATE>"},
    {"province", "<STATE>"},
    {"region", "<STATE>"},
    {"country code", "<COUNTRYCODE>"},
    {"country", "<COUNTRY>"},
    {"language", "<LANGUAGE>"},
    {"category", "<CATEGORY>"},
    {"section", "<CATEGORY>"},
    {"topic", "<CATEGORY>"},
    {"contact", "<NAME>"},
    {"full name", "<NAME>"},
    {"your name", "<NAME>"},
    {"name", "<NAME>"},
};

constexpr Meaning kTokens[] = {
    {"name", "<NAME>"},
    {"given-name", "<FIRSTNAME>"},
    {"family-name", "<LASTNAME>"},
    {"email", "<EMAIL>"},
    {"organization", "<COMPANY>"},
    {"street-address", "<ADDRESS>"},
    {"address-line1", "<ADDRESS>"},
    {"address-level2", "<CITY>"},
    {"address-level1", "<STATE>"},
    {"country", "<COUNTRYCODE>"},
    {"country-name", "<COUNTRY>"},
    {"postal-code", "<POSTCODE>"},
    {"tel", "<PHONE>"},
    {"url", "<URL>"},
    {"language", "<LANGUAGE>"},
    {"new-password", "<PASSWORD>"},
    {"current-password", "<PASSWORD>"},
};

// " e mail ": the words of a label in small letters, with a blank around each.
std::string wordsOf(std::string_view label) {
    std::string words = " ";
    for (const char c : label) {
        if (isWordByte(c))
            words += c;
        else if (words.back() != ' ')
            words += ' ';
    }
    if (words.back() != ' ') words += ' ';
    return words;
}

// "the field \"x\"", or how many there are beyond a few.
void noteNames(std::vector<std::string>& lines, std::string_view before,
               const std::vector<std::string>& names) {
    constexpr std::size_t kMostNamed = 20;
    for (std::size_t i = 0; i < names.size() && i < kMostNamed; ++i)
        lines.push_back(std::string(before) + escapeControlCharacters(left(names[i], kMostLabelBytes)));
    if (names.size() > kMostNamed)
        lines.push_back(std::string(before) + "... " + std::to_string(names.size() - kMostNamed) + " more");
}

// A page may give the action relative to its own address, which a record may not.
bool isSameAction(std::string_view stored, std::string_view action) {
    if (stored == action) return true;
    if (action.empty() || action.find("://") != npos) return false;
    if (action.starts_with("./")) action.remove_prefix(2);
    if (!stored.ends_with(action)) return false;
    return action.starts_with('/') || stored.substr(0, stored.size() - action.size()).ends_with('/');
}

}  // namespace

std::vector<FieldHint> readFieldHints(std::string_view html) {
    return HintReader(html).read();
}

FieldSuggestion suggestValue(const FieldHint& hint) {
    // The last token names the field; those before it say whose it is.
    const std::string_view token = trim(hint.autocomplete);
    const std::size_t blank = token.rfind(' ');
    for (const Meaning& known : kTokens) {
        if (equalsNoCase(blank == npos ? token : token.substr(blank + 1), known.words))
            return {std::string(known.macro), FieldReason::Autocomplete};
    }
    const std::string words = wordsOf(hint.label);
    for (const Meaning& known : kLabels) {
        if (containsNoCase(words, " " + std::string(known.words) + " "))
            return {std::string(known.macro), FieldReason::Label};
    }
    if (!hint.label.empty()) return {};
    // Without a label the name's own words may tell.
    const std::string own = wordsOf(hint.name);
    for (const Meaning& known : kLabels) {
        if (containsNoCase(own, " " + std::string(known.words) + " "))
            return {std::string(known.macro), FieldReason::Name};
    }
    return {};
}

std::vector<std::string> compareWithStored(const StoredForm& stored, const ScrapedForm& form) {
    std::vector<std::string> lines;
    if (!form.found) return {"The page has no form any more"};
    const auto shown = [](std::string_view text) {
        return escapeControlCharacters(left(text, kMostLabelBytes));
    };
    if (!equalsNoCase(stored.method, form.method))
        lines.push_back("Method: " + shown(stored.method) + " is now " + shown(form.method));
    if (!isSameAction(stored.action, form.action))
        lines.push_back("Action: " + shown(stored.action) + " is now " + shown(form.action));
    using Names = std::unordered_set<std::string_view, KeyHash, KeyEqual>;
    const std::vector<FormField> before = splitQuery(stored.query);
    Names old;
    Names now;
    for (const FormField& field : before) old.insert(field.name);
    for (const FormField& field : form.fields) now.insert(field.name);
    std::vector<std::string> added;
    std::vector<std::string> gone;
    for (const FormField& field : form.fields)
        if (!old.contains(field.name)) added.push_back(field.name);
    bool lostAddress = false;
    for (const FormField& field : before) {
        if (now.contains(field.name)) continue;
        // A field of this name never gets a row, so it need not be gone.
        if (equalsNoCase(field.name, "address"))
            lostAddress = true;
        else
            gone.push_back(field.name);
    }
    noteNames(lines, "New field: ", added);
    noteNames(lines, "Field is gone: ", gone);
    if (lostAddress) lines.emplace_back("Add this field by hand again: address");
    return lines;
}

}  // namespace relay
