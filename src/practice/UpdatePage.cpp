// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Failure.h"
#include "practice/PracticePages.h"
#include "practice/PracticeWeb.h"

namespace relay {

namespace {

constexpr std::string_view kFolder = "/enginedata/";
constexpr std::string_view kWords[] = {"404",   "500",     "503",  "blank", "half",  "lying",   "stall",
                                       "reset", "garbage", "slow", "301",   "never", "endless", "loop"};

std::string choice(const std::string& path, const std::string& chosen) {
    std::string html = "<label>" + escapeHtml(path) + "</label>\n<select name=\"" + escapeHtml(path) +
                       "\" size=\"1\">\n<option value=\"\">the file</option>\n";
    for (const std::string_view word : kWords) {
        const std::string name(word);
        html += "<option" + std::string(word == chosen ? " selected" : "") + ">" + escapeHtml(name) +
                "</option>\n";
    }
    return html + "</select>\n";
}

PracticeReply switches(const PracticeRequest& request, PracticeUpdate& update) {
    PracticeReply reply;
    if (!isOwnHost(request.header("Host"))) {
        reply.status = 403;
        reply.body = htmlPage("Forbidden", "<p>Use 127.0.0.1 or localhost as the host name.</p>\n");
        return reply;
    }
    try {
        if (request.method == "POST")
            for (const auto& [path, word] : decodeForm(request.body)) update.fail(path, word);
    } catch (const Failure& failure) {
        reply.status = 400;
        reply.body = htmlPage("Bad Request", "<p>" + escapeHtml(failure.what()) + "</p>\n");
        return reply;
    }
    std::string content = "<p>How the update server answers for each file.</p>\n<form method=\"POST\">\n";
    for (const auto& [path, bytes] : update.files()) content += choice(path, update.failureOf(path));
    reply.body = htmlPage("Update server", content + "<button>Set</button>\n</form>\n");
    return reply;
}

}  // namespace

void PracticeUpdate::fail(std::string_view path, std::string_view word) {
    if (!m_files.contains(path))
        throw Failure("No update file is published as \"" + std::string(path) + "\".");
    if (!word.empty() && !outcome(word, kFolder, path))
        throw Failure("\"" + std::string(word) + "\" is no outcome.");
    const std::lock_guard guard(m_mutex);
    m_words[std::string(path)] = word;
}

std::string PracticeUpdate::failureOf(std::string_view path) const {
    const std::lock_guard guard(m_mutex);
    const auto word = m_words.find(path);
    return word == m_words.end() ? std::string() : word->second;
}

std::optional<PracticeReply> updatePage(const PracticeRequest& request, PracticeSite& site) {
    const std::string_view path = request.path();
    if (path == kFolder) return switches(request, site.update);
    const auto file = site.update.files().find(path);
    if (file == site.update.files().end()) return std::nullopt;
    const std::string word = site.update.failureOf(path);
    PracticeReply reply = word.empty() ? PracticeReply() : *outcome(word, kFolder, path);
    const bool sendsFile = reply.status == 200 && word != "blank";
    if (!sendsFile) return reply;
    reply.type = "text/plain";
    reply.body = pointAtPracticeWeb(file->second, site.address);
    return reply;
}

}  // namespace relay
