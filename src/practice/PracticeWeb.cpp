// SPDX-License-Identifier: GPL-3.0-or-later
#include "practice/PracticeWeb.h"

#include "core/Failure.h"
#include "core/Text.h"
#include "practice/PracticePages.h"

namespace relay {

struct PracticeWeb::Data {
    explicit Data(const PracticeLimits& limits)
        : server(
              "practice web", [this](const PracticeRequest& request) { return answer(request, site); },
              limits) {}

    PracticeSite site;
    LoopbackServer server;
};

PracticeWeb::PracticeWeb(const PracticeLimits& limits) : m_data(std::make_unique<Data>(limits)) {}

PracticeWeb::~PracticeWeb() = default;

void PracticeWeb::describeEngines(std::string_view engines, std::string_view categories) {
    m_data->site.forms.read(engines, categories);
}

void PracticeWeb::publish(UpdateTexts files) {
    m_data->site.update.publish(std::move(files));
}

void PracticeWeb::failUpdate(std::string_view path, std::string_view word) {
    m_data->site.update.fail(path, word);
}

void PracticeWeb::start(std::uint16_t port) {
    if (!address().empty()) throw Failure("The practice web is already running.");
    m_data->server.listen(port);
    m_data->site.address = m_data->server.address();
    m_data->server.serve();
}

std::string PracticeWeb::address() const {
    return m_data->server.address();
}

std::vector<ReceivedSubmission> PracticeWeb::received() const {
    return m_data->site.received.newest();
}

void PracticeWeb::forgetReceived() {
    m_data->site.received.clear();
}

std::string pointAtPracticeWeb(std::string_view catalogue, std::string_view address) {
    const std::size_t port = std::min(address.rfind(':'), address.size());
    return replaceAll(replaceAll(catalogue, "http://@PRACTICE@", address), ".@PRACTICE@",
                      ".localhost" + std::string(address.substr(port)));
}

}  // namespace relay
