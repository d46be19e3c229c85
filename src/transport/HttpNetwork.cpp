// SPDX-License-Identifier: GPL-3.0-or-later
#include "transport/HttpNetwork.h"

#include "core/Failure.h"
#include "transport/HttpTransfer.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QTimer>

#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace relay {

namespace {

using TransferPointer = std::shared_ptr<HttpTransfer>;

struct Command final {
    enum class Kind { Start, Abort } kind;
    TransferPointer transfer;
};

// News of one transfer: progress, its end, or both.
struct Report final {
    TransferPointer transfer;
    qint32 bytes = 0;
    bool ended = false;
};

CURLM* makeMulti() {
    curl_global_init(CURL_GLOBAL_DEFAULT);
    CURLM* const multi = curl_multi_init();
    if (multi == nullptr) throw Failure("The network cannot be started");
    return multi;
}

}  // namespace

// Requests go in through `m_commands` and news come back through `m_outbox`, both under one lock that is held
// for moves only. Each side wakes the other only where it may be asleep: the network thread by
// curl_multi_wakeup while it polls, the event loop by one posted event for all news since it last looked.
struct HttpNetwork::Data final : QObject {
    Data();
    ~Data() override;

    void push(Command::Kind kind, TransferPointer transfer);
    bool event(QEvent* event) override;

  private:
    // Network thread.
    void run();
    bool exchange();
    void takeCommands();
    void handleCommands();
    void begin(const TransferPointer& transfer);
    void end(HttpTransfer& transfer);
    void readMessages();

    // Clients' thread.
    void deliver();
    void takeOutbox();
    void dispatch(const Report& report);

    // Handlers may run the event loop, and so be called inside each other. Beyond this depth news wait for
    // the handlers under way, so that the stack stays small; but a handler that has kept them waiting for so
    // long is taken to be waiting for news itself.
    static constexpr int kNestedDeliveries = 16;
    static constexpr int kNestedPatience = 100;  // milliseconds

    CURLM* const m_multi;
    std::vector<TransferPointer> m_active;
    std::vector<TransferPointer> m_news;
    std::vector<Command> m_taken;

    std::mutex m_lock;
    std::vector<Command> m_commands;
    std::vector<Report> m_outbox;
    bool m_polling = false;
    bool m_notified = false;
    bool m_stopping = false;

    std::vector<Report> m_fresh;
    std::vector<Report> m_inbox;
    std::size_t m_next = 0;  // first report of the inbox that was not yet dispatched
    int m_depth = 0;
    bool m_deferred = false;
    QTimer m_patience;

    std::thread m_thread;
};

HttpNetwork::Data::Data() : m_multi(makeMulti()) {
    m_patience.setSingleShot(true);
    m_patience.setInterval(kNestedPatience);
    QObject::connect(&m_patience, &QTimer::timeout, this, &Data::deliver);
    try {
        m_thread = std::thread([this] { run(); });
    } catch (const std::system_error& failure) {
        curl_multi_cleanup(m_multi);
        throw Failure(failure.what());
    }
}

HttpNetwork::Data::~Data() {
    {
        const std::lock_guard guard(m_lock);
        m_stopping = true;
    }
    curl_multi_wakeup(m_multi);
    m_thread.join();
    for (const TransferPointer& transfer : m_active) curl_multi_remove_handle(m_multi, transfer->easy);
    curl_multi_cleanup(m_multi);
}

void HttpNetwork::Data::push(Command::Kind kind, TransferPointer transfer) {
    bool wake = false;
    {
        const std::lock_guard guard(m_lock);
        m_commands.push_back({kind, std::move(transfer)});
        wake = std::exchange(m_polling, false);
    }
    if (wake) curl_multi_wakeup(m_multi);
}

void HttpNetwork::Data::run() {
    static constexpr int kLongest = 60'000;  // milliseconds; a command ends the wait at once
    while (exchange()) {
        if (m_taken.empty()) {
            curl_multi_poll(m_multi, nullptr, 0, kLongest, nullptr);
            takeCommands();
        }
        handleCommands();
        int running = 0;
        curl_multi_perform(m_multi, &running);
        readMessages();
    }
}

// Hands over the news and takes the commands; without any, the next step is to poll. False at the end.
bool HttpNetwork::Data::exchange() {
    bool notify = false;
    {
        const std::lock_guard guard(m_lock);
        if (m_stopping) return false;
        for (TransferPointer& transfer : m_news) {
            HttpTransfer& source = *transfer;
            source.hasNews = false;
            if (source.outboxIndex == HttpTransfer::kNotListed) {
                source.outboxIndex = m_outbox.size();
                m_outbox.push_back({std::move(transfer), 0, false});
            }
            Report& report = m_outbox[source.outboxIndex];
            report.bytes = static_cast<qint32>(source.received);
            report.ended = source.ended;
        }
        notify = !m_news.empty() && !std::exchange(m_notified, true);
        m_taken.swap(m_commands);
        m_polling = m_taken.empty();
    }
    m_news.clear();
    if (notify) QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    return true;
}

void HttpNetwork::Data::takeCommands() {
    const std::lock_guard guard(m_lock);
    m_taken.swap(m_commands);
    m_polling = false;
}

void HttpNetwork::Data::handleCommands() {
    for (const Command& command : m_taken) {
        if (command.kind == Command::Kind::Start)
            begin(command.transfer);
        else if (command.transfer->activeIndex != HttpTransfer::kNotListed)
            end(*command.transfer);
    }
    m_taken.clear();
}

void HttpNetwork::Data::begin(const TransferPointer& transfer) {
    transfer->news = &m_news;
    transfer->activeIndex = m_active.size();
    m_active.push_back(transfer);
    if (curl_multi_add_handle(m_multi, transfer->easy) != CURLM_OK) end(*transfer);
}

void HttpNetwork::Data::end(HttpTransfer& transfer) {
    transfer.ended = true;
    transfer.listNews();
    curl_multi_remove_handle(m_multi, transfer.easy);
    transfer.readStatus();
    const std::size_t index = std::exchange(transfer.activeIndex, HttpTransfer::kNotListed);
    std::swap(m_active[index], m_active.back());
    m_active[index]->activeIndex = index;
    m_active.pop_back();
    transfer.activeIndex = HttpTransfer::kNotListed;
}

void HttpNetwork::Data::readMessages() {
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(m_multi, &left)) {
        if (message->msg != CURLMSG_DONE) continue;
        char* transfer = nullptr;
        curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &transfer);
        end(*reinterpret_cast<HttpTransfer*>(transfer));
    }
}

bool HttpNetwork::Data::event(QEvent* event) {
    if (event->type() != QEvent::User) return QObject::event(event);
    if (m_depth < kNestedDeliveries) {
        deliver();
    } else {
        m_deferred = true;
        if (!m_patience.isActive()) m_patience.start();
    }
    return true;
}

void HttpNetwork::Data::deliver() {
    takeOutbox();
    ++m_depth;
    while (m_next < m_inbox.size()) {
        const Report report = std::move(m_inbox[m_next++]);
        m_patience.stop();
        dispatch(report);
    }
    --m_depth;
    m_inbox.clear();
    m_next = 0;
    m_patience.stop();
    if (std::exchange(m_deferred, false)) QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void HttpNetwork::Data::takeOutbox() {
    {
        const std::lock_guard guard(m_lock);
        m_notified = false;
        m_fresh.swap(m_outbox);
        for (const Report& report : m_fresh) report.transfer->outboxIndex = HttpTransfer::kNotListed;
    }
    std::move(m_fresh.begin(), m_fresh.end(), std::back_inserter(m_inbox));
    m_fresh.clear();
}

void HttpNetwork::Data::dispatch(const Report& report) {
    HttpTransfer& transfer = *report.transfer;
    if (transfer.client != nullptr && report.bytes > 0)
        transfer.client->report(report.transfer, report.bytes);
    if (transfer.client != nullptr && report.ended) transfer.client->finish(report.transfer);
}

HttpNetwork::HttpNetwork() noexcept = default;

HttpNetwork::~HttpNetwork() = default;

void HttpNetwork::open() {
    if (!m_data) m_data = std::make_unique<Data>();
}

void HttpNetwork::start(TransferPointer transfer) {
    open();
    m_data->push(Command::Kind::Start, std::move(transfer));
}

void HttpNetwork::abort(TransferPointer transfer) {
    if (m_data) m_data->push(Command::Kind::Abort, std::move(transfer));
}

}  // namespace relay
