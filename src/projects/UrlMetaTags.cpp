// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/UrlMetaTags.h"

#include "core/FileSystem.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Url.h"
#include "pagetools/PageFiles.h"
#include "projects/OpenWebsite.h"
#include "projects/UrlList.h"
#include "transport/frmHTTP.h"

namespace relay {

namespace {
constexpr std::string_view kPurpose = "GetMetaTag";
}

UrlMetaTags::UrlMetaTags(OpenWebsite& website, frmHTTP& fetcher, const Services& services)
    : m_website(website), m_fetcher(fetcher), m_services(services) {
    const auto take = [this](const FetchReply& reply) { takeReply(reply); };
    m_fetcher.setConsumer(kPurpose, {take, take, [this] { m_services.prompts.status({}); }});
}

UrlMetaTags::~UrlMetaTags() {
    m_fetcher.removeConsumer(kPurpose);
    cancel();
}

void UrlMetaTags::cancel() {
    if (m_fetcher.isRunning(kPurpose)) m_fetcher.Disconnect();
}

void UrlMetaTags::GetMetaTag() {
    const std::string url = getFirstSelectedItem(m_website.fields.lsvSiteURLs);
    if (url.empty()) {
        const std::string& file = m_website.fields.txtURLFileLocation;
        if (fileExists(file)) m_website.getMetaTag(getHTMLSection(m_services, file, HtmlPart::Head));
    } else if (m_fetcher.isRunning()) {
        m_services.prompts.beep();
    } else {
        m_services.prompts.status("Connecting to " + url + " ...");
        m_fetcher.fetch(kPurpose, withScheme(url));
    }
}

void UrlMetaTags::takeReply(const FetchReply& reply) {
    m_services.prompts.status({});
    if (reply.isPage()) m_website.getMetaTag(reply.text);
    const std::string problem = fetchProblem(reply);
    if (!problem.empty()) m_services.prompts.message(problem, "Get Meta Tag", Icon::Information);
}

void UrlMetaTags::InsertMetaTag() {
    change(MetaTagChange::Way::Insert);
}

void UrlMetaTags::ReplaceMetaTag() {
    change(MetaTagChange::Way::Replace);
}

void UrlMetaTags::change(MetaTagChange::Way way) {
    const bool insert = way == MetaTagChange::Way::Insert;
    const std::string_view title = insert ? "Insert Meta Tag" : "Replace Meta Tag";
    const WebsiteFields& fields = m_website.fields;
    const std::string file = fields.txtURLFileLocation;
    if (!fileExists(file)) {
        m_services.prompts.message(
            "Invalid path or file name for your local HTML file. Please enter a valid local HTML file in the "
            "'" +
                std::string(insert ? "Local File Location" : "Local File") + "' box and try again.",
            title, Icon::Information);
        return;
    }
    const std::string_view question =
        insert ? "This will insert the 'title', 'Keywords' and 'description' Meta Tag to your local HTML "
                 "file.\r\n\r\n"
                 "Are you sure you want to insert the Meta tags into your HTML file?"
               : "This will replace the existing 'title', 'Keywords' and 'description' Meta Tag of your HTML "
                 "file with the new meta tag.\r\n\r\n"
                 "Are you sure you want to repalce the existing Meta tag in your HTML file?";
    if (!m_services.prompts.ask(question, title)) return;
    const MetaTags tags{fields.txtURLTitle, fields.txtURLKeyword, fields.txtURLDescription};
    const bool done =
        insert ? insertMetaTag(m_services, file, tags) : replaceMetaTag(m_services, file, tags, false);
    if (done) m_services.prompts.notice("Written: " + file);
}

}  // namespace relay
