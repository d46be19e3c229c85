// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/Countries.h"

#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/ItemReader.h"
#include "core/Paths.h"
#include "core/Text.h"

namespace relay {

namespace {
constexpr const char* kFileName = "country.kws";
}

Countries::Countries(const Paths& paths) : m_paths(paths) {}

bool Countries::loadCountry() {
    cboCountry.clear();
    m_file.reset();
    std::string text;
    try {
        text = readFile(m_paths.inApp(kFileName));
    } catch (const Failure&) {
        return false;
    }
    m_file = IniFile::parse(text);
    ItemReader reader(text);
    std::string_view item;
    while (reader.nextEntry(item) && !equalsNoCase(item, "[Country Code]")) {
        const std::size_t equals = item.find('=');
        if (equals != npos) cboCountry.emplace_back(item.substr(0, equals));
    }
    return true;
}

std::string Countries::getCountryName(std::string_view code) const {
    return file().value("Country Code", code);
}

std::string Countries::getCountryCode(std::string_view name) const {
    return file().value("Country Name", replaceAll(name, "+", " "));
}

const IniFile& Countries::file() const {
    if (!m_file) {
        try {
            m_file = IniFile::load(m_paths.inApp(kFileName));
        } catch (const Failure&) {
            m_file.emplace();  // a file that cannot be read counts as empty
        }
    }
    return *m_file;
}

}  // namespace relay
