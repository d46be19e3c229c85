// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/OpenWebsite.h"

#include "catalogue/Catalogue.h"
#include "projects/WebsitePanel.h"

#include <functional>

namespace relay {

OpenWebsite::OpenWebsite(Catalogue& catalogue, Prompts& prompts) : m_catalogue(catalogue), m_file(prompts) {}

void OpenWebsite::takeSelectedCategory() {
    fields.mainCategory.clear();
    fields.category.clear();
    m_catalogue.categories.getSelectedCategory(fields.mainCategory, fields.category);
}

bool OpenWebsite::save(const std::string& path, SaveOver over) {
    takeSelectedCategory();
    return m_file.save(path, fields, m_catalogue.lists.myCustomEngine, over);
}

void OpenWebsite::emptyFields() {
    relay::clearWebsiteFields(fields);
    m_catalogue.categories.lstMainCategory.clearHighlights();
    m_catalogue.categories.lstCategory.clear();
}

bool OpenWebsite::loadWebsiteFile(const std::string& path) {
    emptyFields();
    fields.chkBlockFFA = 0;
    return m_file.loadWebsiteFile(path, fields, m_catalogue.lists.myCustomEngine,
                                  [this](std::string& mainCategory, std::string& category) {
                                      m_catalogue.categories.setSelectedCategory(mainCategory, category);
                                      mainCategory.clear();
                                      category.clear();
                                      m_catalogue.categories.getSelectedCategory(mainCategory, category);
                                  });
}

void OpenWebsite::clearWebsiteFields() {
    emptyFields();
    m_catalogue.selection.EngineRemove(true);
    m_file.forget();
}

std::size_t OpenWebsite::fingerprint() {
    takeSelectedCategory();
    std::size_t result = 0;
    const auto add = [&result](std::string_view text) {
        result = result * 1099511628211u + std::hash<std::string_view>()(text) + text.size();
    };
    for (const std::string* text :
         {&fields.txtSiteTitle, &fields.txtSiteKeywords, &fields.txtSiteDescription, &fields.cboWebType,
          &fields.cboLanguage, &fields.mainCategory, &fields.category, &fields.txtCustomCategory})
        add(*text);
    for (const ContactField& contact : kContactFields) add(fields.*contact.field);
    add(fields.chkBlockFFA == 0 ? "0" : "1");
    for (int i = 0; i < fields.lsvSiteURLs.count(); ++i) {
        const RowView row = fields.lsvSiteURLs.at(i);
        add(row.text);
        add(row.tag);
    }
    return result;
}

bool OpenWebsite::DeleteReportFile(const std::string& path) {
    return m_file.DeleteReportFile(path, fields.lsvReports);
}

}  // namespace relay
