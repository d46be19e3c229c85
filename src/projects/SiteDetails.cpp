// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/SiteDetails.h"

#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "pagetools/PageFiles.h"
#include "projects/WebsiteFields.h"
#include "transport/RequestUrl.h"
#include "transport/frmHTTP.h"

namespace relay {

namespace {
constexpr std::string_view kPurpose = "GetSiteInfo";
constexpr std::string_view kTitle = "Get Site Details";
}  // namespace

SiteDetails::SiteDetails(WebsiteFields& fields, frmHTTP& fetcher, const Services& services)
    : m_fields(fields), m_fetcher(fetcher), m_services(services) {
    m_fetcher.setConsumer(
        kPurpose, {[this](const FetchReply& reply) { takeReply(reply); },
                   [this](const FetchReply& reply) { fail(fetchProblem(reply)); }, [this] { fail({}); }});
}

SiteDetails::~SiteDetails() {
    m_fetcher.removeConsumer(kPurpose);
    cancel();
}

void SiteDetails::askAndFetch() {
    if (m_fetcher.isRunning()) {
        m_services.prompts.beep();
        return;
    }
    const auto answer = m_services.prompts.input(
        "Get site Title, Keywords and Description from your web site.\r\n\r\n"
        "Please enter your web site URL and click on the 'OK' button:",
        kTitle);
    if (answer && !answer->empty()) fetchPage(*answer);
}

bool SiteDetails::fetchPage(std::string_view address) {
    if (m_fetcher.isRunning()) return false;
    std::string url(address);
    if (!startsWithNoCase(url, "http")) url.insert(0, "http://");
    m_services.prompts.status("Connecting to " + url + " ...");
    return m_fetcher.fetch(kPurpose, url);
}

void SiteDetails::cancel() {
    if (m_fetcher.isRunning(kPurpose)) m_fetcher.Disconnect();
}

void SiteDetails::fail(const std::string& words) {
    m_services.prompts.status({});
    if (!words.empty()) m_services.prompts.message(words, kTitle, Icon::Information);
    Q_EMIT ended(false, words);
}

void SiteDetails::takeReply(const FetchReply& reply) {
    std::string problem = fetchProblem(reply);
    if (!reply.isPage()) {
        fail(problem);
        return;
    }
    if (!SetSiteInfo(reply.text)) problem = loggableUrl(reply.URL) + ": It could not be read to its end";
    m_services.prompts.status(problem);
    Q_EMIT ended(true, problem);
}

bool SiteDetails::SetSiteInfo(std::string_view html) {
    bool whole = true;
    m_services.prompts.status("Retrieving data from web page ...");
    const BusyPointer busy(m_services.prompts);
    const bool filled = trap(m_services.prompts, "Module: SetSiteInfo\r\n", [&] {
        if (html.empty()) return;
        PageTexts page;
        whole = readMetaTag(m_services, html, page);
        const auto fill = [whole](std::string& field, std::string value) {
            if (whole || !value.empty()) field = std::move(value);
        };
        fill(m_fields.txtSiteTitle, CleanLineBreaks(page.tags.title));
        fill(m_fields.txtSiteKeywords, std::move(page.tags.keywords));
        fill(m_fields.txtSiteDescription, std::move(page.tags.description));
        Q_EMIT fieldsChanged();
    });
    m_services.prompts.status({});
    return filled && whole;
}

}  // namespace relay
