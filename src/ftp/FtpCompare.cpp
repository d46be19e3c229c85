// SPDX-License-Identifier: GPL-3.0-or-later
#include "ftp/FtpCompare.h"

#include "core/FileStore.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/Url.h"
#include "transport/HttpClient.h"
#include "transport/RequestUrl.h"
#include "transport/frmHTTP.h"

#include <QCryptographicHash>

#include <algorithm>
#include <filesystem>
#include <utility>

namespace relay {

namespace {

constexpr std::string_view kPurpose = "CompareWithWeb";
constexpr std::string_view kTitle = "Compare with the web";

std::string digestOf(std::string_view bytes) {
    return QCryptographicHash::hash({bytes.data(), static_cast<qsizetype>(bytes.size())},
                                    QCryptographicHash::Sha256)
        .toStdString();
}

// A file of another size is not read. Throws Failure.
bool hasBytes(const std::string& file, std::string_view bytes) {
    std::error_code unknown;
    const auto size = std::filesystem::file_size(file, unknown);
    return (unknown || size == bytes.size()) && readFile(file) == bytes;
}

// A path as part of a URL.
std::string escapedPath(std::string_view path) {
    constexpr std::string_view kPlain = "-._~/!$'()*,;:@=+";
    std::string escaped;
    for (const char c : path) {
        if ((c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
            kPlain.find(c) != npos) {
            escaped += c;
        } else {
            escaped += '%';
            appendHex(escaped, c);
        }
    }
    return escaped;
}

std::string_view icon(WebState state) {
    switch (state) {
        case WebState::Changed:
            return "Completed";
        case WebState::Unchanged:
            return "WebFile";
        case WebState::Different:
        case WebState::Missing:
            break;
    }
    return "Failed";
}

}  // namespace

std::optional<std::string> publicAddress(std::string_view publicUrl, std::string_view baseFolder,
                                         std::string_view remotePath) {
    const auto withoutEnd = [](std::string_view text) {
        while (text.ends_with('/')) text.remove_suffix(1);
        return text;
    };
    const std::string_view base = withoutEnd(baseFolder);
    if (!remotePath.starts_with(base) || remotePath.size() <= base.size()) return std::nullopt;
    std::string_view rest = remotePath.substr(base.size());
    if (!base.empty() && rest[0] != '/') return std::nullopt;
    while (rest.starts_with('/')) rest.remove_prefix(1);
    if (rest.empty()) return std::nullopt;
    return std::string(withoutEnd(withScheme(trim(publicUrl)))).append("/").append(escapedPath(rest));
}

std::string_view webStateText(WebState state) noexcept {
    switch (state) {
        case WebState::Changed:
            return "Changed";
        case WebState::Unchanged:
            return "Unchanged";
        case WebState::Different:
            return "Different";
        case WebState::Missing:
            break;
    }
    return "Missing";
}

FtpCompare::FtpCompare(const Services& services, frmHTTP& fetcher, QObject* parent)
    : QObject(parent), m_services(services), m_fetcher(fetcher) {
    pages.setColumns({"URL", "Result", "Problem"});
    m_fetcher.setConsumer(kPurpose, {.reply = [this](const FetchReply& reply) { take(reply); },
                                     .failed = [this](const FetchReply& reply) { take(reply); },
                                     .cancelled = [this] { finish(false); }});
}

FtpCompare::~FtpCompare() {
    m_fetcher.removeConsumer(kPurpose);
    if (m_fetcher.isRunning(kPurpose)) m_fetcher.Disconnect();
}

void FtpCompare::setPublicFolder(std::string publicUrl, std::string baseFolder) {
    if (publicUrl != m_publicUrl || baseFolder != m_baseFolder) m_before.clear();
    m_publicUrl = std::move(publicUrl);
    m_baseFolder = std::move(baseFolder);
}

bool FtpCompare::start(const std::vector<FtpFileEnd>& files, bool remembering) {
    m_wanted.clear();
    m_at = 0;
    m_remembering = remembering;
    for (const FtpFileEnd& file : files) {
        if (!remembering && !file.ok) continue;
        const std::optional<std::string> url = publicAddress(m_publicUrl, m_baseFolder, file.remotePath);
        if (url && !(remembering && m_before.contains(*url))) m_wanted.push_back({file.file, *url});
    }
    m_running = true;
    Q_EMIT runningChanged(true);
    next();
    return true;
}

void FtpCompare::remember(const std::vector<FtpFileEnd>& files, std::function<void()> done) {
    if (m_running || !isOn()) {
        done();
        return;
    }
    m_done = std::move(done);
    start(files, true);
}

void FtpCompare::compare(const std::vector<FtpFileEnd>& files) {
    if (m_running) return;
    if (!isOn()) {
        m_services.prompts.message("Please enter the public address of the remote folder in the login first.",
                                   kTitle, Icon::Information);
        return;
    }
    m_results.clear();
    pages.clear();
    start(files, false);
}

void FtpCompare::next() {
    if (m_at == m_wanted.size()) {
        finish(true);
        return;
    }
    const std::string url = m_wanted[m_at].url;
    m_services.prompts.status("Comparing " + url);
    if (m_fetcher.fetch(kPurpose, url)) return;
    if (!m_remembering)
        m_services.prompts.message("Another page is being retrieved. Please try again.", kTitle,
                                   Icon::Information);
    finish(false);
}

WebPage FtpCompare::judged(const Wanted& wanted, const FetchReply& reply) const {
    WebPage page{wanted.file, wanted.url, WebState::Missing, fetchProblem(reply)};
    const std::string address = loggableUrl(reply.URL) + ": ";
    if (page.problem.starts_with(address)) page.problem.erase(0, address.size());
    if (!page.problem.empty()) return page;
    const std::optional<std::string> unread = failureOf([&] {
        const auto before = m_before.find(wanted.url);
        if (!hasBytes(wanted.file, reply.text))
            page.state = WebState::Different;
        else if (before != m_before.end() && before->second == digestOf(reply.text))
            page.state = WebState::Unchanged;
        else
            page.state = WebState::Changed;
    });
    if (unread) page.problem = *unread;
    return page;
}

void FtpCompare::take(const FetchReply& reply) {
    if (!m_running) return;
    const Wanted wanted = m_wanted[m_at++];
    if (m_remembering) {
        const bool page = fetchProblem(reply).empty();
        m_before[wanted.url] = page ? std::optional(digestOf(reply.text)) : std::nullopt;
        // A web server that is silent is not asked for every page.
        if (reply.status == HttpClient::kNoStatus) m_at = m_wanted.size();
    } else {
        m_results.push_back(judged(wanted, reply));
        const WebPage& page = m_results.back();
        pages.add({.text = page.url,
                   .subItems = {std::string(webStateText(page.state)), page.problem},
                   .icon = std::string(icon(page.state)),
                   .tag = page.url});
        Q_EMIT pageCompared(page);
    }
    // The fetcher is free again when its consumer has returned.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_running) next();
        },
        Qt::QueuedConnection);
}

void FtpCompare::stop() {
    if (!m_running) return;
    const bool fetching = m_fetcher.isRunning(kPurpose);
    if (fetching)
        m_fetcher.Disconnect();  // its consumer finishes
    else
        finish(false);
}

void FtpCompare::finish(bool whole) {
    if (!m_running) return;
    m_running = false;
    m_services.prompts.status("");
    // What an upload published is what the next one compares with.
    if (!m_remembering)
        for (const WebPage& page : m_results)
            if (page.state == WebState::Changed) m_before.erase(page.url);
    Q_EMIT runningChanged(false);
    if (m_remembering) {
        const std::function<void()> done = std::exchange(m_done, {});
        if (done) done();
    } else {
        Q_EMIT ended(whole);
    }
}

std::vector<std::string> FtpCompare::changedUrls() const {
    std::vector<std::string> urls;
    for (const WebPage& page : m_results)
        if (page.state == WebState::Changed) urls.push_back(page.url);
    return urls;
}

}  // namespace relay
