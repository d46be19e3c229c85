// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"
#include "ftp/FtpQueue.h"

#include <QObject>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

class frmHTTP;
struct FetchReply;
struct Services;

// The web address of a remote file, or nothing when it does not lie in `baseFolder` or below.
// `publicUrl` is the web address of that folder. Blanks and other bytes of the path are escaped.
std::optional<std::string> publicAddress(std::string_view publicUrl, std::string_view baseFolder,
                                         std::string_view remotePath);

// What the web shows of an uploaded file.
enum class WebState {
    Changed,    // the uploaded file, and something else (or nothing) was there before the upload
    Unchanged,  // the uploaded file, as before
    Different,  // other bytes than the uploaded file's: a cache, a script, or the wrong address
    Missing,    // no page; the problem says why
};
struct WebPage final {
    std::string file;  // local
    std::string url;
    WebState state = WebState::Missing;
    std::string problem;
};
// "Changed", "Unchanged", "Different", "Missing"
std::string_view webStateText(WebState state) noexcept;

// Compares uploaded files with what their public addresses show. Two steps: remember() before an upload notes
// what is there, compare() after it tells what changed. One page at a time, through the fetcher.
class FtpCompare final : public QObject {
    Q_OBJECT
  public:
    FtpCompare(const Services& services, frmHTTP& fetcher, QObject* parent = nullptr);
    ~FtpCompare() override;

    // The web address of a folder of the server. An empty address switches the comparison off.
    void setPublicFolder(std::string publicUrl, std::string baseFolder);
    bool isOn() const noexcept { return !m_publicUrl.empty(); }

    // Before an upload; calls `done` when every page was looked at, when stopped, or when the web is silent.
    // What was seen before an earlier, failed attempt stays.
    void remember(const std::vector<FtpFileEnd>& files, std::function<void()> done);
    // After an upload: one `pageCompared` a file, then `ended`. Files that failed are passed over. A message
    // says it when there is no public address or the fetcher is busy.
    void compare(const std::vector<FtpFileEnd>& files);
    void stop();
    bool isRunning() const noexcept { return m_running; }

    Rows pages;  // columns "URL", "Result" and "Problem", tag the URL; of the last comparison
    const std::vector<WebPage>& results() const noexcept { return m_results; }
    // Exactly the addresses whose pages changed: for Submit.
    std::vector<std::string> changedUrls() const;

  Q_SIGNALS:
    void runningChanged(bool running);
    void pageCompared(const relay::WebPage& page);
    // `whole` is false after stop().
    void ended(bool whole);

  private:
    struct Wanted final {
        std::string file;
        std::string url;
    };

    bool start(const std::vector<FtpFileEnd>& files, bool remembering);
    void next();
    void take(const FetchReply& reply);
    void finish(bool whole);
    WebPage judged(const Wanted& wanted, const FetchReply& reply) const;

    const Services& m_services;
    frmHTTP& m_fetcher;
    std::string m_publicUrl;
    std::string m_baseFolder;
    std::vector<Wanted> m_wanted;
    std::size_t m_at = 0;
    std::map<std::string, std::optional<std::string>> m_before;  // URL: digest, or no page
    std::vector<WebPage> m_results;
    std::function<void()> m_done;
    bool m_remembering = false;
    bool m_running = false;
};

}  // namespace relay
