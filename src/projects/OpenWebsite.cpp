// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/OpenWebsite.h"

#include "catalogue/Catalogue.h"
#include "core/FileSystem.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "pagetools/PageFiles.h"
#include "projects/WebFormData.h"

#include <functional>

namespace relay {

namespace {
constexpr std::string_view kHtmlFilter =
    "HTML files (*.htm;*.html)|*.htm;*.html|Text files (*.txt)|*.txt|All Files (*.*)|*.*|";
}  // namespace

OpenWebsite::OpenWebsite(Catalogue& catalogue, const Services& services)
    : m_services(services), m_catalogue(catalogue), m_prompts(services.prompts), m_file(services.prompts) {}

void OpenWebsite::open(const std::string& path) {
    noteFilled(load(path));
    Q_EMIT fieldsChanged();
}

void OpenWebsite::openNew() {
    noteFilled(true);
    Q_EMIT fieldsChanged();
}

void OpenWebsite::openFormData(std::string bytes) {
    getWebFormData(bytes);
    m_file.standFor(std::move(bytes));
    noteFilled(true);
    ++m_filled;  // nothing of it is saved as a website
}

void OpenWebsite::importWebFormData() {
    trap(m_prompts, "importWebFormData_Error: ", [this] {
        const std::string folder = m_services.paths.inApp("WebFormData");
        makeFolder(folder);
        int filter = 1;
        const std::string file = ShowFileDialog(m_prompts, false, kWebFormFilter, folder, {}, filter);
        if (file.empty()) return;
        const bool read = trap(
            m_prompts, "getWebFormData_Error: ", [&] { getWebFormData(readWebFormData(file)); },
            kFormDataTitle);
        if (read) tellFormData(file);
    });
}

void OpenWebsite::getWebFormData(std::string_view text) {
    m_formLines =
        applyWebFormData(text, fields, [this](std::string_view mainCategory, std::string_view category) {
            m_catalogue.categories.setSelectedCategory(mainCategory, category);
        });
    Q_EMIT fieldsChanged();
}

void OpenWebsite::tellFormData(const std::string& file) const {
    const std::string notice = webFormDataNotice(file, m_formLines);
    if (m_formLines == 0)
        m_prompts.message(notice, kFormDataTitle, Icon::Information);
    else
        m_prompts.notice(notice);
}

bool OpenWebsite::isTouched() {
    return fingerprint() != m_filled;
}

void OpenWebsite::noteFilled(bool whole) {
    m_whole = whole;
    m_filled = fingerprint();
}

bool OpenWebsite::save(const std::string& path, SaveWish wish) {
    if (!m_whole || !write(path, SaveOver::WhatWasSeen)) {
        const bool leaving = wish == SaveWish::Leaving;
        if (!isTouched()) {
            if (m_whole) open(path);
            if (m_whole || leaving) return true;
        }
        if (!askToSaveOver(path)) return leaving && giveUpTyped(path);
        write(path, SaveOver::Anything);
    }
    noteFilled(true);
    return true;
}

void OpenWebsite::saveOver(const std::string& path) {
    write(path, SaveOver::Anything);
    noteFilled(true);
}

bool OpenWebsite::write(const std::string& path, SaveOver over) {
    takeSelectedCategory();
    return m_file.save(path, fields, m_catalogue.lists.myCustomEngine, over);
}

bool OpenWebsite::askToSaveOver(const std::string& path) const {
    const std::string_view reason =
        m_whole ? " was changed by another program since this window read it."
                : " could not be read completely. Saving overwrites the part that was not read.";
    return m_prompts.ask("The file " + path + std::string(reason) +
                             "\r\n\r\nDo you want to overwrite it with what this window shows?",
                         "Save Web Site");
}

bool OpenWebsite::giveUpTyped(const std::string& path) {
    const bool gaveUp =
        m_prompts.ask("Your changes are not saved.\r\n\r\nDo you want to discard them and leave the file " +
                          path + " as it is?",
                      "Save Web Site");
    if (gaveUp) open(path);
    return gaveUp;
}

void OpenWebsite::takeSelectedCategory() {
    fields.mainCategory.clear();
    fields.category.clear();
    m_catalogue.categories.getSelectedCategory(fields.mainCategory, fields.category);
}

void OpenWebsite::emptyFields() {
    fields.clear();
    m_catalogue.categories.lstMainCategory.clearHighlights();
    m_catalogue.categories.lstCategory.clear();
    for (EngineCategoryEntry& engine : m_catalogue.lists.myCustomEngine) {
        engine.Data.clear();
        engine.SpaceID.clear();
    }
}

bool OpenWebsite::load(const std::string& path) {
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
    for (const WebsiteKey& key : kWebsiteKeys)
        if (key.field) add(fields.*key.field);
    // What saving would store for each custom engine; choosing one to look at its category changes nothing.
    const CustomEngines& custom = m_catalogue.lists.myCustomEngine;
    for (std::size_t i = 0; i < custom.size(); ++i) {
        const bool shown = fields.cboCustomEngines == static_cast<int>(i);
        const std::string& path = shown ? fields.txtCustomCategory : custom[i].Data;
        add(path.empty() ? m_file.storedCategory(custom[i].EngineName) : path);
        add(custom[i].SpaceID);
    }
    add(fields.chkBlockFFA == 0 ? "0" : "1");
    for (int i = 0; i < fields.lsvSiteURLs.count(); ++i) {
        const RowView row = fields.lsvSiteURLs.at(i);
        add(row.text);
        add(row.tag);
    }
    for (const SitemapEntry& entry : fields.sitemap.entries()) {
        add(entry.url);
        add(entry.lastmod);
    }
    return result;
}

void OpenWebsite::chooseURL(int row) {
    fields.txtURLFileLocation = std::string(fields.lsvSiteURLs.at(row).tag);
    const std::string head = fileExists(fields.txtURLFileLocation)
                                 ? getHTMLSection(m_services, fields.txtURLFileLocation, HtmlPart::Head)
                                 : std::string();
    fields.txtURLTitle.clear();
    fields.txtURLKeyword.clear();
    fields.txtURLDescription.clear();
    showMetaTag(head);
    Q_EMIT fieldsChanged();
}

void OpenWebsite::getMetaTag(std::string_view html) {
    m_prompts.status({});
    showMetaTag(html);
    Q_EMIT fieldsChanged();
}

void OpenWebsite::showMetaTag(std::string_view html) {
    if (html.empty()) return;
    trap(m_prompts, "Module: getMetaTag\r\n", [&] {
        PageTexts page;
        readMetaTag(m_services, html, page);
        const auto show = [](std::string& field, std::string text, std::string& label, const char* name) {
            field = std::move(text);
            label = std::string(name) + ": (" + std::to_string(characterCount(field)) + " chars)";
        };
        show(fields.txtURLTitle, CleanLineBreaks(page.tags.title), fields.lblURLTitle, "Title");
        show(fields.txtURLKeyword, std::move(page.tags.keywords), fields.lblURLKeyword, "Keywords");
        show(fields.txtURLDescription, std::move(page.tags.description), fields.lblURLDescription,
             "Description");
    });
}

void OpenWebsite::openFileLocation() {
    trap(m_prompts, "OpenFileLocation_Error: ", [this] {
        int filterIndex = 1;
        const std::string file = ShowFileDialog(m_prompts, false, kHtmlFilter, {}, {}, filterIndex);
        if (file.empty() || !fileExists(file)) return;
        fields.txtURLFileLocation = file;
        const int row = fields.lsvSiteURLs.firstHighlighted();
        if (row >= 0) fields.lsvSiteURLs.setTag(row, file);
    });
    Q_EMIT fieldsChanged();
}

void OpenWebsite::viewReport() {
    trap(m_prompts, "viewReport_Error: ", [this] {
        const int row = fields.lsvReports.firstHighlighted();
        const std::string file = row < 0 ? std::string() : std::string(fields.lsvReports.at(row).tag);
        const std::string name = file.substr(file.find_last_of("/\\") + 1);
        if (containsNoCase(name, ".htm") && fileExists(file))
            openOrTell(m_prompts, file, "View Report");
        else
            m_prompts.message("Report file is missing and corrupt. Please re-submit and try again.",
                              "View Report", Icon::Critical);
    });
}

bool OpenWebsite::DeleteReportFile(const std::string& path, const std::string& reportFolder) {
    return m_file.DeleteReportFile(path, fields.lsvReports, reportFolder);
}

}  // namespace relay
