// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/FormScraper.h"

#include "core/KeySet.h"
#include "core/Text.h"
#include "core/Url.h"

#include <algorithm>
#include <utility>

namespace relay {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kFormEnd = "=============================\r\n";
constexpr std::string_view kCloseForm = "</form>";
constexpr std::string_view kCloseTextarea = "</textarea>";
constexpr std::string_view kCloseSelect = "</select>";
constexpr std::size_t kLeastLimit = std::size_t{16} * 1024 * 1024;
constexpr std::size_t kLimitPerByte = 8;

// The places of one kind of tag, in ascending order.
class Places final {
  public:
    void add(std::size_t place) { m_places.push_back(static_cast<std::uint32_t>(place)); }
    bool empty() const noexcept { return m_places.empty(); }
    // The first at or after `from` and before `end`, or npos.
    std::size_t next(std::size_t from, std::size_t end = npos) const noexcept {
        const auto place = std::lower_bound(m_places.begin(), m_places.end(), from);
        return place == m_places.end() || *place >= end ? npos : *place;
    }

  private:
    std::vector<std::uint32_t> m_places;
};

// Where the page has the tags that matter. Finding them in one pass keeps the work in proportion to the page
// even when its forms lie inside each other.
struct Marks final {
    explicit Marks(std::string_view html);

    Places forms, formEnds, inputs, textareas, textareaEnds, selects, selectEnds;
};

Marks::Marks(std::string_view html) {
    for (std::size_t at = html.find('<'); at != npos; at = html.find('<', at + 1)) {
        const std::string_view tag = html.substr(at, kCloseTextarea.size());
        const auto note = [&](std::string_view start, Places& places) {
            if (startsWithNoCase(tag, start)) places.add(at);
        };
        switch (tag.size() < 2 ? '\0' : tag[1] | 0x20) {
            case 'f':
                note("<form ", forms);
                break;
            case 'i':
                note("<input", inputs);
                break;
            case 't':
                note("<textarea", textareas);
                break;
            case 's':
                note("<select", selects);
                break;
            case '/':
                note(kCloseForm, formEnds);
                note(kCloseTextarea, textareaEnds);
                note(kCloseSelect, selectEnds);
                break;
            default:
                break;
        }
    }
}

// Copies the forms of one page.
class FormCopier final {
  public:
    explicit FormCopier(std::string_view html)
        : m_html(html),
          m_marks(html),
          m_lastClose(html.rfind('>')),
          m_limit(std::max(kLeastLimit, html.size() * kLimitPerByte)) {}

    std::string copy() {
        if (m_marks.forms.empty()) return std::string(m_html);
        m_source.reserve(m_html.size() + kFormEnd.size());
        for (std::size_t form = m_marks.forms.next(0); form != npos && !isFull();) {
            copyTo(form, closeOfTag(form, m_html.size()));
            const std::size_t end = m_marks.formEnds.next(form);
            copyElements(form, end == npos ? m_html.size() : end + kCloseForm.size());
            m_source += kFormEnd;
            form = m_marks.forms.next(end == npos ? form + 1 : end);
        }
        return std::move(m_source);
    }

  private:
    bool isFull() const noexcept { return m_source.size() >= m_limit; }
    // Behind the first ">" at or after the place; npos when there is none before `end`.
    std::size_t closeOfTag(std::size_t from, std::size_t end) const noexcept {
        if (m_lastClose == npos || from > m_lastClose) return npos;
        const std::size_t close = m_html.find('>', from);
        return close < end ? close + 1 : npos;
    }
    // False, with nothing done, for an element that is not closed.
    bool copyTo(std::size_t from, std::size_t end) {
        if (end == npos) return false;
        m_source.append(m_html.substr(from, end - from)).append(kLineEnd);
        return true;
    }
    // One element of each kind in turn, as long as there are any.
    void copyElements(std::size_t from, std::size_t end) {
        std::size_t input = m_marks.inputs.next(from, end);
        std::size_t textarea = m_marks.textareas.next(from, end);
        std::size_t select = m_marks.selects.next(from, end);
        // Copies the element that ends behind `close`; gives the next of its kind.
        const auto copyOne = [&](std::size_t& element, const Places& kind, std::size_t close) {
            element = copyTo(element, close) ? kind.next(close, end) : npos;
        };
        const auto closed = [&](std::size_t element, const Places& ends, std::string_view tag) {
            const std::size_t close = ends.next(element, end);
            return close == npos ? npos : close + tag.size();
        };
        while ((input != npos || textarea != npos || select != npos) && !isFull()) {
            if (input != npos) copyOne(input, m_marks.inputs, closeOfTag(input, end));
            if (textarea != npos)
                copyOne(textarea, m_marks.textareas, closed(textarea, m_marks.textareaEnds, kCloseTextarea));
            if (select != npos)
                copyOne(select, m_marks.selects, closed(select, m_marks.selectEnds, kCloseSelect));
        }
    }

    std::string_view m_html;
    Marks m_marks;
    std::size_t m_lastClose;
    std::size_t m_limit;
    std::string m_source;
};

// The macro for a field of this name; empty when the name is unknown.
std::string_view macroForName(std::string_view name) noexcept {
    struct KnownName final {
        std::string_view name;
        std::string_view macro;
    };
    static constexpr KnownName kKnown[] = {
        {"title", "<TITLE>"},
        {"section", "<CATEGORY>"},
        {"category", "<CATEGORY>"},
        {"url", "<URL>"},
        {"name", "<NAME>"},
        {"contact name", "<NAME>"},
        {"fullname", "<NAME>"},
        {"company", "<COMPANY>"},
        {"email", "<EMAIL>"},
        {"contact email", "<EMAIL>"},
        {"keywords", "<KEYWORD>"},
        {"keyword", "<KEYWORD>"},
        {"description", "<DESCRIPTION>"},
        {"comment", "<DESCRIPTION>"},
        {"descr", "<DESCRIPTION>"},
        {"password", "<PASSWORD>"},
        {"phone", "<PHONE>"},
        {"telephone", "<PHONE>"},
        {"fax", "<FAX>"},
        {"city", "<CITY>"},
        {"suburb", "<CITY>"},
        {"state", "<STATE>"},
        {"country", "<COUNTRY>"},
        {"postcode", "<POSTCODE>"},
        {"zip", "<POSTCODE>"},
        {"zipcode", "<POSTCODE>"},
        {"language", "<LANGUAGE>"},
    };
    for (const KnownName& known : kKnown)
        if (name.size() == known.name.size() && equalsNoCase(name, known.name)) return known.macro;
    return {};
}

// The row for a field; nothing for "address", which has never had one.
void fillValue(FormField& field, std::string_view tag) {
    if (const std::string_view macro = macroForName(field.name); !macro.empty()) {
        field.value = macro;
        field.why = FieldReason::Name;
    } else if (containsNoCase(tag, "hidden")) {
        field.value = EncodeURLValue(getFieldValue(tag, "value"));
        field.why = FieldReason::Hidden;
    }
}

// Rows by name, without regard to case; the first of a name stays.
class FieldList final {
  public:
    explicit FieldList(std::vector<FormField>& fields) : m_fields(fields) {}

    // Gives the new row, or nullptr when there is one of that name or there are too many.
    FormField* add(std::string name) {
        if (m_fields.size() >= kMostFormFields) return nullptr;
        const auto keys = [this](std::uint32_t place) { return std::string_view(m_fields[place].name); };
        if (!m_names.insert(static_cast<std::uint32_t>(m_fields.size()), name, keys)) return nullptr;
        return &m_fields.emplace_back(FormField{std::move(name), {}, FieldReason::None});
    }

  private:
    std::vector<FormField>& m_fields;
    KeySet m_names;
};

bool isField(std::string_view tag) noexcept {
    return startsWithNoCase(tag, "input") || startsWithNoCase(tag, "texta") || startsWithNoCase(tag, "selec");
}

}  // namespace

std::string_view reasonName(FieldReason why) noexcept {
    static constexpr std::string_view kNames[] = {"", "name", "hidden", "label", "autocomplete", "stored"};
    return kNames[static_cast<std::size_t>(why)];
}

std::string extractFormSource(std::string_view html) {
    return FormCopier(html).copy();
}

ScrapedForm readForm(std::string_view source) {
    ScrapedForm form;
    std::size_t at = findNoCase(source, "<form");
    const std::size_t formClose = at == npos ? npos : source.find('>', at);
    if (formClose == npos) return form;
    form.found = true;
    const std::string_view formTag = source.substr(at + 1, formClose - at);
    form.method = containsNoCase(getFieldValue(formTag, "method"), "post") ? "POST" : "GET";
    form.action = getFieldValue(formTag, "ACTION");
    // About what a field takes in a source.
    constexpr std::size_t kFieldBytes = 64;
    form.fields.reserve(std::min(kMostFormFields, source.size() / kFieldBytes));
    FieldList fields(form.fields);
    while ((at = source.find('<', at)) != npos) {
        const std::size_t open = at + 1;
        at = source.find('>', at);
        if (at == npos) break;
        const std::string_view tag = source.substr(open, at - open + 1);
        if (!isField(tag)) continue;
        std::string name = getFieldValue(tag, "name");
        if (name.empty() || equalsNoCase(name, "address")) continue;
        if (FormField* const field = fields.add(std::move(name))) fillValue(*field, tag);
    }
    return form;
}

std::string getFieldValue(std::string_view tag, std::string_view key) {
    // A value of up to two bytes, or a quote and one more, is not searched for its end.
    constexpr std::size_t kShortest = 3;
    const std::size_t place = findNoCase(tag, key);
    const std::size_t equals = place == npos ? npos : tag.find('=', place);
    if (equals == npos) return {};
    std::size_t end = tag.find(' ', equals + kShortest);
    if (end == npos) end = tag.find('>', equals + kShortest);
    // A single byte before the end of the tag is a value too.
    if (end == npos && tag.ends_with('>')) end = tag.size() - 1;
    if (end == npos) return {};
    std::string_view value = trim(tag.substr(equals + 1, end - equals - 1));
    if (value.ends_with(kLineEnd)) value.remove_suffix(kLineEnd.size());
    if (value.starts_with('"')) value.remove_prefix(1);
    if (value.ends_with('"')) value = trim(value.substr(0, value.size() - 1));
    return std::string(value);
}

std::string buildQuery(const std::vector<FormField>& fields) {
    std::size_t size = 0;
    for (const FormField& field : fields) size += field.name.size() + field.value.size() + 2;
    std::string query;
    query.reserve(size);
    bool first = true;
    for (const FormField& field : fields) {
        const bool isRaw =
            first || field.value.empty() || (field.value.starts_with('<') && field.value.ends_with('>'));
        if (!std::exchange(first, false)) query += '&';
        query.append(field.name).append("=").append(isRaw ? field.value : EncodeURLValue(field.value));
    }
    return query;
}

std::vector<FormField> splitQuery(std::string_view query) {
    std::vector<FormField> fields;
    FieldList list(fields);
    while (!query.empty()) {
        const std::string_view part = query.substr(0, query.find('&'));
        if (const std::size_t equals = part.find('='); equals != npos) {
            if (FormField* const field = list.add(std::string(part.substr(0, equals))))
                field->value = part.substr(equals + 1);
        }
        query.remove_prefix(std::min(part.size() + 1, query.size()));
    }
    return fields;
}

}  // namespace relay
