// SPDX-License-Identifier: GPL-3.0-or-later
#include "SubmissionFixture.h"

#include "core/Text.h"

namespace relay::test {

void statusByPath(FaultServer::Peer& peer) {
    const int status = std::atoi(peer.path().c_str() + 1);
    if (status == 0)
        peer.waitForClose();
    else
        peer.send(FaultServer::answer(status));
}

SubmissionFixture::SubmissionFixture(std::string ownCommandLine)
    : SessionFixture(ownCommandLine), linkEngines(containsNoCase(ownCommandLine, "/U")) {
    preference.GetSettings();
    openController();
}

void SubmissionFixture::openController() {
    controller.emplace(services, catalogue, SubmissionOptions{QLocale(QLocale::English), linkEngines});
    QObject::connect(&*controller, &SubmissionController::engineEnded, &*controller,
                     [this](const EngineEnded& e) {
                         ended.push_back({std::string(e.URL), std::string(e.engine), e.code, e.result});
                     });
    QObject::connect(&*controller, &SubmissionController::reportWritten, &*controller,
                     [this](const UrlReport& report) { reports.push_back(report); });
    QObject::connect(&*controller, &SubmissionController::runDone, &*controller,
                     [this](const RunSummary& summary) { done = summary; });
}

void SubmissionFixture::selectEngines(std::string_view records, std::string_view tables) {
    ASSERT_TRUE(loadEngines(records, tables));
    for (const clsEngines& engine : lists.engines) addEngineListView(lists.lsvSelectedEngines, engine);
}

std::string SubmissionFixture::records(std::string_view prefix, int count, std::string_view action) const {
    const std::string whole = action.starts_with('/') ? server.url(action) : std::string(action);
    std::string text;
    for (int number = 1; number <= count; ++number) {
        text.append("Name=").append(prefix).append(std::to_string(number)).append("\n");
        text.append("Type=ENG\nMethod=GET\nQuery=u=<url>\nAction=").append(whole).append("\n");
    }
    return text;
}

void SubmissionFixture::prepare(const std::vector<std::string>& websites) {
    for (const std::string& file : websites) ASSERT_TRUE(controller->addSite(file, "Site", "Project"));
    ASSERT_TRUE(controller->cmdNext());
    ASSERT_TRUE(controller->cmdStart());
}

void SubmissionFixture::start(const std::vector<std::string>& websites) {
    ASSERT_NO_FATAL_FAILURE(prepare(websites));
    ASSERT_TRUE(controller->cmdSubmit());
}

void SubmissionFixture::run(const std::vector<std::string>& websites) {
    ASSERT_NO_FATAL_FAILURE(start(websites));
    ASSERT_TRUE(waitForEnd());
}

bool SubmissionFixture::waitForEnd() {
    return waitUntil([this] { return done.has_value(); });
}

std::vector<std::string> SubmissionFixture::boxes() const {
    std::vector<std::string> all;
    for (const auto& shown : prompts.shown)
        if (shown.kind == "message") all.push_back(shown.title + "|" + shown.text);
    return all;
}

}  // namespace relay::test
