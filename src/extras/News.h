// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace relay {

class frmHTTP;
struct FetchReply;
struct Services;

// The stored message of the maker.
struct NewsMessage final {
    std::string date;
    std::string title;
    std::string message;
};
// The texts of news.dat; fixed ones where it has no message. Throws Failure when it cannot be read.
NewsMessage readNews(const std::string& file);

// What the news window shows.
struct NewsState final {
    std::string lblTitle;
    std::string txtMessage;
    std::string problem;  // why the last check brought nothing; else empty
    bool checking = false;
};

// How a check for a new message ended.
enum class NewsCheck {
    New,
    NoNews,       // the stored message is the current one
    NotReceived,  // no answer, or one that is no news
    NotStored,    // the message could not be written; a box has said why
    Cancelled,
};

// The news: a message of the maker on the update server, and the copy of it in the program folder.
class News final : public QObject {
    Q_OBJECT
  public:
    // The address of the program's own server, for settings without an update server; it serves as long as
    // the pointer is kept. Throws Failure.
    using OwnServer = std::function<std::shared_ptr<const std::string>()>;

    // Receives the fetcher's replies for its purpose as long as it lives; the other arguments outlive it.
    News(const Services& services, frmHTTP& fetcher, OwnServer ownServer);
    ~News() override;  // cancels its request

    const NewsState& state() const noexcept { return m_state; }

    // The window opens: looks for a new message, or shows the stored one, as the setting says.
    void open();
    // The setting CheckNewMsgAtOpen.
    bool checksAtOpen() const;
    void setChecksAtOpen(bool on);
    // Asks this server, HOST or HOST:PORT, instead of that of the settings. Throws Failure for other texts.
    void setServer(std::string_view host);
    // Shows the stored message.
    void loadMessages();
    // Requests the message; ended() follows, perhaps before this returns. While the fetcher is in use, only
    // shows the stored message.
    void checkNewMessage();
    // Stores a message of the server and shows what is stored then; a box says when it is not new.
    NewsCheck showNewMessage(const std::string& body, std::int16_t status);
    void cancel();

  Q_SIGNALS:
    void changed();  // the state
    void ended(relay::NewsCheck how);

  private:
    std::string newsAddress();
    void takeReply(const FetchReply& reply);
    void finish(NewsCheck how, std::string problem);

    const Services& m_services;
    frmHTTP& m_fetcher;
    OwnServer m_ownServer;
    std::string m_file;
    std::string m_server;
    std::shared_ptr<const std::string> m_own;
    NewsState m_state;
};

}  // namespace relay
