// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "practice/EngineForms.h"
#include "practice/PracticeReply.h"
#include "practice/ReceivedLog.h"

#include <optional>
#include <string>
#include <string_view>

namespace relay {

// What the pages work on.
struct PracticeSite final {
    std::string address;  // "http://127.0.0.1:PORT"
    ReceivedLog received;
    EngineForms forms;
    qint64 ahead = 0;  // bytes of bodies that clients were sent and did not take yet, of all connections
};

// One kind of page: answers the requests that are its own, nullopt for any other.
using PracticePage = std::optional<PracticeReply> (*)(const PracticeRequest& request, PracticeSite& site);

// "/" and "/received.json": what came in. Refused to a Host that is not this machine, so that a web site
// whose name is pointed at 127.0.0.1 cannot read it.
std::optional<PracticeReply> receivedPage(const PracticeRequest& request, PracticeSite& site);
// "/engines/SLUG/" and "/engines/SLUG/add": an engine's home page and its form.
std::optional<PracticeReply> enginePage(const PracticeRequest& request, PracticeSite& site);
// Paths whose last word names an outcome; what is sent there is kept.
std::optional<PracticeReply> outcomePage(const PracticeRequest& request, PracticeSite& site);

// Asks every kind of page in turn; 404 when none knows the path.
PracticeReply answer(const PracticeRequest& request, PracticeSite& site);

std::string escapeHtml(std::string_view text);  // the five characters; bytes that are no UTF-8 as \xNN
// A whole page of the practice web around its content, which is HTML already.
std::string htmlPage(std::string_view title, std::string_view content);
// The word between "/engines/" and the next slash; empty on any other path.
std::string_view engineOf(std::string_view path) noexcept;

}  // namespace relay
