// SPDX-License-Identifier: GPL-3.0-or-later
#include "extras/News.h"

#include "catalogue/UpdateFiles.h"
#include "core/FileStore.h"
#include "core/IniFile.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/SettingsStore.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/clsPreference.h"
#include "transport/frmHTTP.h"

#include <utility>

namespace relay {

namespace {

constexpr std::string_view kPurpose = "News";
constexpr std::string_view kSection = "News";
constexpr std::string_view kCheckKey = "CheckNewMsgAtOpen";
constexpr std::string_view kMessage = "Message=";
constexpr std::string_view kDate = "Date=";
constexpr std::int16_t kFound = 200;
// More than the fetcher takes from a server.
constexpr std::size_t kLargestNews = std::size_t{32} * 1024 * 1024;

// What tells one message from another.
std::string_view identity(std::string_view date) {
    constexpr std::size_t kCharacters = 10;
    return left(trim(firstLine(date)), kCharacters);
}

bool isNews(std::string_view body) {
    return body.find(kDate) != npos && body.find("Title=") != npos && body.find("Message") != npos;
}

}  // namespace

NewsMessage readNews(const std::string& file) {
    const std::string text = readFile(file, kLargestNews);
    const IniFile document = IniFile::parse(text);
    NewsMessage news{document.value(kSection, "Date"), document.value(kSection, "Title"), {}};
    if (news.title.empty()) news.title = kApplication;
    // The last key, whose text may have many lines.
    if (const std::size_t start = text.find(kMessage); start != npos)
        news.message = text.substr(start + kMessage.size());
    while (news.message.ends_with('\n') || news.message.ends_with('\r')) news.message.pop_back();
    if (news.message.empty()) {
        news.title = "Korvel Relay V6.0";
        news.message = "Best professional web promotion site submission software for all business.";
    }
    return news;
}

News::News(const Services& services, frmHTTP& fetcher, OwnServer ownServer)
    : m_services(services),
      m_fetcher(fetcher),
      m_ownServer(std::move(ownServer)),
      m_file(services.paths.inApp("news.dat")) {
    const auto take = [this](const FetchReply& reply) { takeReply(reply); };
    m_fetcher.setConsumer(kPurpose, {take, take, [this] { finish(NewsCheck::Cancelled, {}); }});
}

News::~News() {
    m_fetcher.removeConsumer(kPurpose);
    cancel();
}

void News::open() {
    if (checksAtOpen())
        checkNewMessage();
    else
        loadMessages();
}

bool News::checksAtOpen() const {
    return leadingInteger(m_services.settings.value(kApplication, kSection, kCheckKey, "1")) != 0;
}

void News::setChecksAtOpen(bool on) {
    trap(m_services.prompts, "Save_Setting_Error: ", [&] {
        m_services.settings.setValue(kApplication, kSection, kCheckKey, on ? "1" : "0");
        m_services.settings.save();
    });
}

void News::setServer(std::string_view host) {
    m_server = serverAddress(host);
}

void News::loadMessages() {
    NewsMessage news{{}, kApplication, {}};
    trap(
        m_services.prompts, "loadMessage_Error: ", [&] { news = readNews(m_file); }, "loadMessage");
    m_state.lblTitle = std::move(news.title);
    m_state.txtMessage = std::move(news.message);
    Q_EMIT changed();
}

void News::checkNewMessage() {
    if (m_fetcher.isRunning()) {
        m_state.problem = "Another page is being fetched. Try again when it has arrived.";
        loadMessages();
        Q_EMIT ended(NewsCheck::NotReceived);
        return;
    }
    m_state = {"Checking New Message ...", "Connecting to korvelrelay web site ....", {}, true};
    Q_EMIT changed();
    std::string address;
    const auto failure = failureOf([&] { address = newsAddress(); });
    if (failure)
        takeReply({{}, {}, HttpClient::kNoStatus, *failure});
    else
        m_fetcher.fetch(kPurpose, address);
}

// Without a server in the settings the program serves its installed news itself.
std::string News::newsAddress() {
    const std::string& named = m_services.preference.UpdateServer;
    std::string server = m_server.empty() && !named.empty() ? serverAddress(named) : m_server;
    if (server.empty()) {
        m_own = m_ownServer();
        server = *m_own;
    }
    return server + std::string(kNewsPath);
}

void News::takeReply(const FetchReply& reply) {
    const bool whole = reply.problem.empty();
    const NewsCheck how =
        showNewMessage(whole ? reply.text : std::string(), static_cast<std::int16_t>(reply.status));
    std::string problem = how == NewsCheck::NotReceived ? fetchProblem(reply) : std::string();
    if (how == NewsCheck::NotReceived && problem.empty()) problem = "What the server sent is no news.";
    finish(how, reply.URL.empty() ? reply.problem : problem);
}

NewsCheck News::showNewMessage(const std::string& body, std::int16_t status) {
    NewsCheck how = NewsCheck::NotReceived;
    const bool done = trap(
        m_services.prompts, "showNewMessage_Error: ",
        [&] {
            if (status != kFound || !isNews(body)) return;
            const std::string old(identity(ReadIniValue(m_file, kSection, "Date")));
            writeFile(m_file, body + "\r\n");
            const std::string_view date = std::string_view(body).substr(body.find(kDate) + kDate.size());
            how = identity(date) == old ? NewsCheck::NoNews : NewsCheck::New;
        },
        "showNewMessage");
    if (!done)
        how = NewsCheck::NotStored;
    else if (how != NewsCheck::New)
        m_services.prompts.message("No New Message !", "Error", Icon::Information);
    loadMessages();
    return how;
}

void News::finish(NewsCheck how, std::string problem) {
    m_own.reset();
    m_state.checking = false;
    m_state.problem = std::move(problem);
    Q_EMIT changed();
    Q_EMIT ended(how);
}

void News::cancel() {
    if (m_fetcher.isRunning(kPurpose)) m_fetcher.Disconnect();
}

}  // namespace relay
