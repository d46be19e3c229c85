// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/WebFormData.h"

#include "core/Failure.h"
#include "core/FileNames.h"
#include "core/FileStore.h"
#include "core/IniFile.h"
#include "core/Text.h"
#include "projects/UrlList.h"
#include "projects/WebsiteFields.h"

#include <algorithm>
#include <iterator>

namespace relay {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

struct FormField final {
    std::string_view name;
    std::string WebsiteFields::*field;
};
constexpr FormField kFields[] = {
    {"Title", &WebsiteFields::txtSiteTitle},
    {"Keyword", &WebsiteFields::txtSiteKeywords},
    {"Keywords", &WebsiteFields::txtSiteKeywords},
    {"Description", &WebsiteFields::txtSiteDescription},
    {"WebType", &WebsiteFields::cboWebType},
    {"Language", &WebsiteFields::cboLanguage},
    {"YourName", &WebsiteFields::txtName},
    {"FullName", &WebsiteFields::txtName},
    {"Name", &WebsiteFields::txtName},
    {"Email", &WebsiteFields::txtEmail},
    {"Company", &WebsiteFields::txtCompany},
    {"Address", &WebsiteFields::txtAddress},
    {"City", &WebsiteFields::txtCity},
    {"Postcode", &WebsiteFields::txtPostcode},
    {"Zipcode", &WebsiteFields::txtPostcode},
    {"State", &WebsiteFields::txtState},
    {"Country", &WebsiteFields::cboCountry},
    {"Phone", &WebsiteFields::txtPhone},
    {"Telephone", &WebsiteFields::txtPhone},
    {"Fax", &WebsiteFields::txtFax},
    {"Password", &WebsiteFields::txtPassword},
};
constexpr std::string_view kUrlNames[] = {"URL", "URL1", "URL2", "URL3", "URL4", "URL5"};
constexpr std::string_view kMainCategoryNames[] = {"MainCategory", "Category"};

bool isOneOf(std::string_view name, const auto& names) {
    return std::any_of(std::begin(names), std::end(names),
                       [name](std::string_view known) { return equalsNoCase(known, name); });
}

// Applies lines and keeps the category that they have named so far.
class FormReader final {
  public:
    FormReader(WebsiteFields& fields, const SelectFormCategory& select)
        : m_fields(fields), m_select(select) {}

    // False for a line that is none of a form.
    bool take(std::string_view line) {
        std::size_t separator = line.find(':');
        if (separator == npos) separator = line.find('=');
        if (separator == npos) return false;
        return take(trim(line.substr(0, separator)), trim(line.substr(separator + 1)));
    }

  private:
    bool take(std::string_view name, std::string_view value) {
        if (isOneOf(name, kUrlNames)) return value.empty() || takeUrl(value);
        if (isOneOf(name, kMainCategoryNames)) return selectCategory(m_main, value);
        if (equalsNoCase(name, "SubCategory")) return selectCategory(m_sub, value);
        const auto* const known =
            std::find_if(std::begin(kFields), std::end(kFields),
                         [name](const FormField& field) { return equalsNoCase(field.name, name); });
        if (known == std::end(kFields)) return false;
        m_fields.*known->field = value;
        return true;
    }
    // True for one that is already there, too.
    bool takeUrl(std::string_view url) {
        addNewItem(m_fields.lsvSiteURLs, url);
        return true;
    }
    bool selectCategory(std::string& part, std::string_view value) {
        part = value;
        if (m_select) m_select(m_main, m_sub);
        return true;
    }

    WebsiteFields& m_fields;
    const SelectFormCategory& m_select;
    std::string m_main;
    std::string m_sub;
};

}  // namespace

std::string readWebFormData(const std::string& file) {
    std::string text = readFile(file, IniFile::kLargestFile);
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF"))
        throw fileFailure(file, "The file is UTF-16 text. Save it as UTF-8 or as plain text and try again.",
                          5);
    return text;
}

int applyWebFormData(std::string_view text, WebsiteFields& fields, const SelectFormCategory& select) {
    fields.cboWebType.clear();
    fields.txtSiteTitle.clear();
    fields.lsvSiteURLs.clear();
    fields.lsvReports.clear();
    fields.sitemap.clear();
    fields.clearWorkArea();
    fields.txtURLFileLocation.clear();
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    const RowsBatch batch(fields.lsvSiteURLs);
    FormReader reader(fields, select);
    int applied = 0;
    while (!text.empty()) {
        const std::string_view line = firstLine(text);
        applied += reader.take(line) ? 1 : 0;
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
    return applied;
}

std::string webFormDataNotice(const std::string& file, int applied) {
    const std::string name = escapeControlCharacters(getFileNameFromFile(file));
    if (applied == 0) return "No field of a web form was found in " + name + ".";
    return "Web form data imported from " + name + ": " + std::to_string(applied) +
           (applied == 1 ? " field" : " fields");
}

}  // namespace relay
