// SPDX-License-Identifier: GPL-3.0-or-later
#include "practice/PracticePages.h"

#include <algorithm>
#include <array>

namespace relay {

namespace {

using Ending = PracticeReply::Ending;

struct NamedEnding {
    std::string_view word;
    Ending ending;
};

constexpr std::array<NamedEnding, 8> kFaults = {{{"half", Ending::Half},
                                                 {"stall", Ending::Stall},
                                                 {"lying", Ending::Lying},
                                                 {"reset", Ending::Reset},
                                                 {"empty", Ending::Empty},
                                                 {"garbage", Ending::Garbage},
                                                 {"never", Ending::Never},
                                                 {"endless", Ending::Endless}}};

constexpr int kSlowMilliseconds = 1000;

std::string thankYou() {
    return htmlPage("Thank you", "<p>Your site was received.</p>\n");
}

PracticeReply redirectTo(std::string location, int status = 302) {
    PracticeReply reply;
    reply.status = status;
    reply.location = std::move(location);
    reply.body = htmlPage("Moved", "<p>The page is elsewhere.</p>\n");
    return reply;
}

// "200" to "999"; 0 for any other word.
int statusOf(std::string_view word) {
    const bool isNumber = word.size() == 3 && word.find_first_not_of("0123456789") == std::string_view::npos;
    const int status = isNumber ? std::stoi(std::string(word)) : 0;
    return status >= 200 ? status : 0;
}

bool isRedirect(int status) {
    return (status >= 301 && status <= 303) || status == 307 || status == 308;
}

PracticeReply statusReply(int status, std::string_view folder) {
    if (isRedirect(status)) return redirectTo(std::string(folder) + "thanks", status);
    PracticeReply reply;
    reply.status = status;
    reply.body =
        status < 300 ? thankYou() : htmlPage(std::to_string(status), "<p>An error, for practice.</p>\n");
    if (status == 204 || status == 304) reply.body.clear();
    return reply;
}

}  // namespace

std::optional<PracticeReply> outcome(std::string_view word, std::string_view folder, std::string_view path) {
    PracticeReply reply;
    reply.body = thankYou();
    if (word == "submit") return reply;
    if (const int status = statusOf(word); status != 0) return statusReply(status, folder);
    if (word == "slow") {
        reply.delayMilliseconds = kSlowMilliseconds;
        return reply;
    }
    if (word == "blank") {
        reply.body.clear();
        return reply;
    }
    if (word == "loop") return redirectTo(std::string(path));
    if (word == "to-file") return redirectTo("file:///etc/passwd");
    if (word == "to-ftp") return redirectTo("ftp://127.0.0.1/");
    const auto fault = std::find_if(kFaults.begin(), kFaults.end(),
                                    [word](const NamedEnding& named) { return named.word == word; });
    if (fault == kFaults.end()) return std::nullopt;
    reply.ending = fault->ending;
    return reply;
}

std::optional<PracticeReply> outcomePage(const PracticeRequest& request, PracticeSite& site) {
    const std::string_view path = request.path();
    const std::size_t wordAt = path.rfind('/') + 1;
    const std::string_view word = path.substr(wordAt);
    if (word == "thanks") {
        PracticeReply reply;
        reply.body = thankYou();
        return reply;
    }
    auto reply = outcome(word, path.substr(0, wordAt), path);
    if (reply) site.received.add(engineOf(path), request);
    return reply;
}

}  // namespace relay
