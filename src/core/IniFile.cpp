// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/IniFile.h"

#include "core/Failure.h"
#include "core/FolderLock.h"
#include "core/Keys.h"
#include "core/Text.h"

#include <algorithm>
#include <deque>
#include <list>
#include <unordered_map>
#include <utility>

namespace relay {

namespace {

constexpr std::string_view kBlanks = " \t";

std::string_view trimBlanks(std::string_view text) {
    const std::size_t start = text.find_first_not_of(kBlanks);
    if (start == npos) return {};
    return text.substr(start, text.find_last_not_of(kBlanks) - start + 1);
}

// The first line of the text with its line end.
std::string_view wholeLine(std::string_view text) {
    const std::size_t end = firstLine(text).size();
    const std::string_view rest = text.substr(end);
    return text.substr(0, end + (startsWithNoCase(rest, "\r\n") ? 2 : rest.empty() ? 0 : 1));
}

std::size_t countLines(std::string_view text) {
    std::size_t lines = 0;
    for (; !text.empty(); ++lines) text.remove_prefix(wholeLine(text).size());
    return lines;
}

// The value for the text after an equals sign.
std::string_view readValue(std::string_view value, std::size_t limit) {
    value = trimBlanks(value);
    const bool quoted =
        value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front();
    if (quoted) value = value.substr(1, value.size() - 2);
    value = value.substr(0, limit);
    return trimRight(value.substr(0, value.find('\0')));
}

}  // namespace

struct IniFile::Data {
    // A key, or (with an empty name) a run of lines that are not keys. Text that was read stays a view; a
    // value that was set is stored separately.
    struct Entry final {
        std::string_view raw;
        std::string_view key;
        std::unique_ptr<std::string> value;

        std::string_view readable() const {
            if (value) return *value;
            const std::string_view line = firstLine(raw);
            return line.substr(line.find('=') + 1);
        }
    };
    struct Section final {
        std::string header;  // empty for the lines before the first section
        std::string_view name;
        std::vector<Entry> entries;
        std::string_view closingBlanks;
        std::unordered_map<std::string_view, std::size_t, KeyHash, KeyEqual> places;
    };

    std::string source;
    Style style = Style::Profile;
    std::list<Section> sections;  // a list, and names in a deque, so that pointers and views stay valid
    std::deque<std::string> names;
    std::unordered_map<std::string_view, Section*, KeyHash, KeyEqual> sectionPlaces;

    std::string_view keep(std::string_view name) { return names.emplace_back(name); }
    std::string_view lineEnd() const { return style == Style::Settings ? "\n" : "\r\n"; }
    Section& addSection(std::string_view header, std::string_view name) {
        return addSection(sections.end(), header, name);
    }
    Section& addSection(std::list<Section>::iterator before, std::string_view header, std::string_view name) {
        Section& section = *sections.emplace(before);
        section.header = header;
        section.name = name;
        if (!header.empty()) sectionPlaces.try_emplace(name, &section);
        return section;
    }
    Section& newSection(std::string_view name);
    Entry& newKey(Section& section, std::string_view key);
    void read();
    void readLine(Section& section, std::string_view raw);
    const Entry* find(std::string_view section, std::string_view key) const;
};

void IniFile::Data::read() {
    Section* section = &addSection({}, {});
    std::string_view rest = source;
    while (!rest.empty()) {
        const std::string_view raw = wholeLine(rest);
        rest.remove_prefix(raw.size());
        const std::string_view line = trimBlanks(firstLine(raw));
        const std::size_t close = line.rfind(']');
        if (!line.empty() && line.front() == '[' && close != npos)
            section = &addSection(raw, trimBlanks(line.substr(1, close - 1)));
        else
            readLine(*section, raw);
    }
}

void IniFile::Data::readLine(Section& section, std::string_view raw) {
    const std::string_view line = trimBlanks(firstLine(raw));
    const auto joined = [](std::string_view a, std::string_view b) {
        return a.empty() ? b : std::string_view(a.data(), a.size() + b.size());
    };
    if (line.empty()) {
        section.closingBlanks = joined(section.closingBlanks, raw);
        return;
    }
    const std::size_t equals = line.find('=');
    const bool isKey = equals != npos && equals > 0 && line.front() != ';' && line.front() != '[';
    // Consecutive lines that are not keys share one entry, blank lines between them included.
    if (!section.closingBlanks.empty() || !isKey) {
        if (section.entries.empty() || !section.entries.back().key.empty()) section.entries.emplace_back();
        std::string_view& run = section.entries.back().raw;
        run = joined(run, std::exchange(section.closingBlanks, {}));
        if (!isKey) run = joined(run, raw);
    }
    if (!isKey) return;
    const std::string_view key = trimBlanks(line.substr(0, equals));
    section.places.try_emplace(key, section.entries.size());
    section.entries.push_back({raw, key, nullptr});
}

const IniFile::Data::Entry* IniFile::Data::find(std::string_view section, std::string_view key) const {
    const auto found = sectionPlaces.find(trimBlanks(section));
    if (found == sectionPlaces.end()) return nullptr;
    const auto place = found->second->places.find(trimBlanks(key));
    return place == found->second->places.end() ? nullptr : &found->second->entries[place->second];
}

IniFile::Data::Section& IniFile::Data::newSection(std::string_view name) {
    name = keep(name);
    const std::string header = "[" + std::string(name) + "]" + std::string(lineEnd());
    if (style == Style::Profile) return addSection(header, name);
    const auto next = std::find_if(sections.begin(), sections.end(), [&](const Section& section) {
        return !section.header.empty() && section.name > name;
    });
    const bool last = next == sections.end();
    const bool onlyOne = last && sections.back().header.empty() && sections.back().entries.empty();
    if (last && !onlyOne && sections.back().closingBlanks.empty()) sections.back().closingBlanks = "\n";
    Section& section = addSection(next, header, name);
    if (!last) section.closingBlanks = "\n";
    return section;
}

IniFile::Data::Entry& IniFile::Data::newKey(Section& section, std::string_view key) {
    key = keep(key);
    auto& entries = section.entries;
    auto next = entries.end();
    if (style == Style::Settings)
        next =
            std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) { return entry.key > key; });
    const auto place = static_cast<std::size_t>(next - entries.begin());
    if (next != entries.end()) {
        for (auto& [name, at] : section.places) at += at >= place ? 1 : 0;
    }
    section.places.emplace(key, place);
    return *entries.insert(next, {{}, key, nullptr});
}

IniFile::IniFile() : m_data(std::make_unique<Data>()) {
    m_data->read();
}
IniFile::~IniFile() = default;
IniFile::IniFile(IniFile&&) noexcept = default;
IniFile& IniFile::operator=(IniFile&&) noexcept = default;

IniFile IniFile::load(const std::string& path) {
    try {
        return parse(readFile(path, kLargestFile));
    } catch (const Failure& failure) {
        if (failure.number() != 53) throw;
        return IniFile();
    }
}

IniFile IniFile::parse(std::string_view text, Style style) {
    IniFile file;
    *file.m_data = Data();
    file.m_data->source = text;
    file.m_data->style = style;
    file.m_data->read();
    return file;
}

std::string IniFile::value(std::string_view section, std::string_view key, std::size_t limit) const {
    const Data::Entry* const entry = m_data->find(section, key);
    return entry ? std::string(readValue(entry->readable(), limit)) : std::string();
}

std::string_view IniFile::writtenValue(std::string_view section, std::string_view key) const {
    const Data::Entry* const entry = m_data->find(section, key);
    return entry ? entry->readable() : std::string_view();
}

bool IniFile::has(std::string_view section, std::string_view key) const {
    return m_data->find(section, key) != nullptr;
}

bool IniFile::takesKey(std::string_view key) {
    key = trimBlanks(firstLine(key));
    return !key.empty() && key.find('=') == npos && key.front() != '[' && key.front() != ';';
}

void IniFile::setValue(std::string_view section, std::string_view key, std::string_view value) {
    section = trimBlanks(firstLine(section));
    key = trimBlanks(firstLine(key));
    if (section.empty() || !takesKey(key))
        throw Failure("Invalid section or key: [" + std::string(section) + "] " + std::string(key), 5);
    const auto place = m_data->sectionPlaces.find(section);
    Data::Section& target =
        place == m_data->sectionPlaces.end() ? m_data->newSection(section) : *place->second;
    const auto entry = target.places.find(key);
    Data::Entry& changed =
        entry == target.places.end() ? m_data->newKey(target, key) : target.entries[entry->second];
    changed.value = std::make_unique<std::string>(firstLine(value));
}

void IniFile::removeSection(std::string_view section) {
    // The section may be named by a view into itself.
    const std::string name(trimBlanks(section));
    m_data->sectionPlaces.erase(name);
    m_data->sections.remove_if([&name](const Data::Section& other) {
        return !other.header.empty() && equalsNoCase(other.name, name);
    });
}

std::vector<IniFile::Place> IniFile::places() const {
    std::vector<Place> all;
    std::size_t line = 1;
    for (const Data::Section& section : m_data->sections) {
        const auto found = m_data->sectionPlaces.find(section.name);
        const bool sectionCounts =
            section.header.empty() || (found != m_data->sectionPlaces.end() && found->second == &section);
        if (!section.header.empty()) all.push_back({line, section.name, {}, sectionCounts});
        line += countLines(section.header);
        for (std::size_t i = 0; i < section.entries.size(); ++i) {
            const Data::Entry& entry = section.entries[i];
            if (!entry.key.empty())
                all.push_back(
                    {line, section.name, entry.key, sectionCounts && section.places.at(entry.key) == i});
            line += countLines(entry.raw);
        }
        line += countLines(section.closingBlanks);
    }
    return all;
}

std::vector<IniFile::StrayLine> IniFile::strayLines() const {
    std::vector<StrayLine> stray;
    std::size_t line = 1;
    for (const Data::Section& section : m_data->sections) {
        line += countLines(section.header);
        for (const Data::Entry& entry : section.entries) {
            for (std::string_view rest = entry.raw; !rest.empty(); ++line) {
                const std::string_view text = trimBlanks(firstLine(rest));
                if (entry.key.empty() && !text.empty() && text.front() != ';') stray.push_back({line, text});
                rest.remove_prefix(wholeLine(rest).size());
            }
        }
        line += countLines(section.closingBlanks);
    }
    return stray;
}

std::vector<std::string> IniFile::sections() const {
    std::vector<std::string> result;
    for (const Data::Section& section : m_data->sections) {
        const auto place = m_data->sectionPlaces.find(section.name);
        if (place != m_data->sectionPlaces.end() && place->second == &section)
            result.emplace_back(section.name);
    }
    return result;
}

std::vector<std::string> IniFile::keys(std::string_view section) const {
    std::vector<std::string> result;
    const auto found = m_data->sectionPlaces.find(trimBlanks(section));
    if (found == m_data->sectionPlaces.end()) return result;
    const Data::Section& from = *found->second;
    for (std::size_t i = 0; i < from.entries.size(); ++i) {
        const auto place = from.places.find(from.entries[i].key);
        if (place != from.places.end() && place->second == i) result.emplace_back(from.entries[i].key);
    }
    return result;
}

std::string IniFile::text() const {
    std::string out;
    out.reserve(m_data->source.size() + m_data->source.size() / 4);
    const std::string_view lineEnd = m_data->lineEnd();
    const auto append = [&](std::string_view piece) {
        // Only the last line read can lack a line end.
        const bool open = !out.empty() && out.back() != '\n' && out.back() != '\r';
        if (open && !piece.empty()) out.append(lineEnd);
        out.append(piece);
    };
    for (const Data::Section& section : m_data->sections) {
        append(section.header);
        for (const Data::Entry& entry : section.entries) {
            append(entry.value ? entry.key : entry.raw);
            if (entry.value) out.append("=").append(*entry.value).append(lineEnd);
        }
        append(section.closingBlanks);
    }
    return out;
}

void IniFile::save(const std::string& path, Readable readable) const {
    writeFile(path, text(), readable);
}

namespace {

std::string readOrNothing(const std::string& file, std::string_view section, std::string_view key,
                          std::size_t limit) {
    try {
        return IniFile::load(file).value(section, key, limit);
    } catch (const Failure&) {
        return {};
    }
}

}  // namespace

std::string ReadIniValue(const std::string& file, std::string_view section, std::string_view key) {
    return readOrNothing(file, section, key, IniFile::kShortLimit);
}

std::string ReadIniValueLong(const std::string& file, std::string_view section, std::string_view key) {
    return readOrNothing(file, section, key, IniFile::kLongLimit);
}

std::string WriteIniValue(const std::string& file, std::string_view section, std::string_view key,
                          std::string_view value) {
    try {
        const FolderLock lock(file);
        IniFile document = IniFile::load(file);
        document.setValue(section, key, value);
        document.save(file);
        return "1";
    } catch (const Failure&) {
        return "0";
    }
}

}  // namespace relay
