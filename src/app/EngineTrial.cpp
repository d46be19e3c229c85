// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/EngineTrial.h"

#include "catalogue/Catalogue.h"
#include "catalogue/CatalogueReader.h"
#include "core/Failure.h"
#include "core/FileSystem.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/clsPreference.h"
#include "submission/RequestPreview.h"
#include "submission/SubmissionData.h"
#include "transport/frmHTTP.h"

namespace relay {

namespace {

constexpr std::string_view kPurpose = "EngineTrial";
constexpr std::string_view kExample =
    "[Web Site Info]\r\nTitle=Paper Shop\r\nKeyword=paper, pens\r\nDescription=Paper and pens.\r\n"
    "WebType=Commercial Site\r\nLanguage=English\r\nMainCategory=Business and Finance\r\n"
    "YourName=Ada Example\r\nEmail=info@shop.example\r\nCompany=Paper Shop\r\nAddress=1 Quay Street\r\n"
    "City=Harbourtown\r\npostcode=12345\r\nState=Example\r\nCountry=United States\r\nPhone=555 0100\r\n"
    "Fax=555 0101\r\n";
constexpr const char* kExampleURL = "http://www.shop.example/";

// "harbour-search": the engine's name as part of a path.
std::string pathOf(std::string_view name) {
    std::string path;
    for (const char c : toLower(name)) path += (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ? c : '-';
    return path;
}

// The data of the request; the engine's tables are its own.
std::string dataOf(const CustomEngineRecord& record, const TemplateSource& source) {
    std::string data = expandQuery(source);
    if (data.empty())
        throw Failure("Nothing would be sent for \"" + record.Name + "\": no row has a macro such as <URL>.");
    return data;
}

}  // namespace

EngineTrial::EngineTrial(const Services& services, const Catalogue& catalogue, frmHTTP& fetcher,
                         std::function<void(const TrialResult& result)> done)
    : m_services(services), m_catalogue(catalogue), m_fetcher(fetcher), m_done(std::move(done)) {
    m_fetcher.setConsumer(kPurpose, {[this](const FetchReply& reply) { finish(fetchProblem(reply)); },
                                     [this](const FetchReply& reply) { finish(fetchProblem(reply)); },
                                     [this] { finish("Cancelled"); }});
}

EngineTrial::~EngineTrial() {
    m_fetcher.removeConsumer(kPurpose);
    if (m_fetcher.isRunning(kPurpose)) m_fetcher.Disconnect();
}

bool EngineTrial::start(const CustomEngineRecord& record, const std::string& websiteFile) {
    if (m_fetcher.isRunning()) return false;
    if (const auto failure = failureOf([&] { send(record, websiteFile); })) m_done({*failure, {}, {}});
    return true;
}

void EngineTrial::send(const CustomEngineRecord& record, const std::string& websiteFile) {
    if (!m_web) {
        auto web = std::make_unique<PracticeWeb>();
        web->start();
        m_web = std::move(web);
    }
    m_web->forgetReceived();

    const std::string text = recordText(record);
    const EngineCategories own(recordTable(record));
    const bool hasOwn = !record.CategoryData.empty();
    const auto tables = hasOwn ? own.storage() : m_catalogue.engineCategories.storage();
    const EngineTexts texts{text, *tables};
    clsEngines engine(texts);
    CategoryRule rule(hasOwn ? own : m_catalogue.engineCategories);
    CatalogueReader reader(text);
    while (reader.next()) engine.set(reader.key(), reader.value());
    // Without tables the engine gets the website's own category.
    failureOf([&] { rule.resolve(engine); });

    const bool hasFile = !websiteFile.empty() && fileExists(websiteFile);
    const IniFile website = hasFile ? IniFile::load(websiteFile) : IniFile::parse(kExample);
    const std::vector<std::string> urls = hasFile ? websiteURLs(websiteFile) : std::vector<std::string>();
    const WebDetails details = readWebDetails(urls.empty() ? kExampleURL : urls.front(), website);
    std::string data = dataOf(
        record, {engine, details, website, m_catalogue.countries, m_services.preference.BlockSpam != 0});
    const auto request = submissionRequest(
        record.Method, m_web->address() + "/engines/" + pathOf(record.Name) + "/submit", std::move(data));
    if (!request) throw Failure("Nothing would be sent.");
    m_fetcher.fetch(kPurpose, request->URL,
                    request->isPost() ? std::optional<std::string>(request->data) : std::nullopt);
}

void EngineTrial::finish(const std::string& problem) {
    TrialResult result;
    const std::vector<ReceivedSubmission> received = m_web->received();
    if (received.empty()) {
        result.problem = problem.empty() ? "Nothing arrived." : problem;
    } else {
        result.method = received.back().method;
        result.fields = received.back().fields;
    }
    m_done(result);
}

}  // namespace relay
