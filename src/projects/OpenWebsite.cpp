// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/OpenWebsite.h"

#include "catalogue/Categories.h"
#include "catalogue/EngineLists.h"
#include "catalogue/EngineSelection.h"
#include "projects/WebsitePanel.h"

namespace relay {

OpenWebsite::OpenWebsite(Categories& categories, EngineLists& engines, EngineSelection& selection,
                         Prompts& prompts)
    : m_categories(categories), m_engines(engines), m_selection(selection), m_file(prompts) {}

void OpenWebsite::takeSelectedCategory() {
    fields.mainCategory.clear();
    fields.category.clear();
    m_categories.getSelectedCategory(fields.mainCategory, fields.category);
}

bool OpenWebsite::saveWebsiteFile(const std::string& path) {
    takeSelectedCategory();
    return m_file.saveWebsiteFile(path, fields, m_engines.myCustomEngine);
}

void OpenWebsite::save(const std::string& path) {
    takeSelectedCategory();
    WebsiteFile::save(path, fields, m_engines.myCustomEngine);
}

bool OpenWebsite::loadWebsiteFile(const std::string& path) {
    return m_file.loadWebsiteFile(path, fields, m_engines.myCustomEngine,
                                  [this](std::string& mainCategory, std::string& category) {
                                      m_categories.setSelectedCategory(mainCategory, category);
                                      mainCategory.clear();
                                      category.clear();
                                      m_categories.getSelectedCategory(mainCategory, category);
                                  });
}

void OpenWebsite::clearWebsiteFields() {
    relay::clearWebsiteFields(fields);
    m_selection.EngineRemove(true);
    m_categories.lstMainCategory.clearHighlights();
    m_categories.lstCategory.clear();
}

bool OpenWebsite::DeleteReportFile(const std::string& path) {
    return m_file.DeleteReportFile(path, fields.lsvReports);
}

}  // namespace relay
