// SPDX-License-Identifier: GPL-3.0-or-later
#include "transport/HttpNetwork.h"

#include "core/Failure.h"
#include "transport/HttpTransfer.h"
#include "transport/TransferQueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <mutex>
#include <new>
#include <pthread.h>
#include <system_error>
#include <thread>
#include <utility>

namespace relay {

namespace {

constexpr const char* kNetworkThread = "network";  // its name for debuggers and top

using TransferPointer = std::shared_ptr<HttpTransfer>;

// Progress of one transfer, its end, or both.
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

// Requests go in through `m_commands` and reports come back through `m_outbox`; one lock guards both and is
// held only to move items. Each side wakes the other only when it may be asleep: curl_multi_wakeup while the
// network thread polls, one posted event for all reports since the event loop last looked.
struct HttpNetwork::Data final : QObject {
    Data();
    ~Data() override;

    void push(bool HttpTransfer::*command, TransferPointer transfer) noexcept;
    bool event(QEvent* event) override;

  private:
    // Network thread.
    enum class Turn { Work, Poll, PollShortly, Stop };
    void run() noexcept;
    Turn exchange() noexcept;
    bool postNotice() noexcept;
    void poll(int milliseconds) noexcept;
    void handleCommands() noexcept;
    void begin(const TransferPointer& transfer) noexcept;
    void end(HttpTransfer& transfer) noexcept;
    void readMessages() noexcept;

    // Clients' thread.
    void deliver();
    void takeOutbox();
    Report nextReport();
    void dispatch(const Report& report);

    // Handlers may run the event loop and so nest. Beyond this depth reports wait for the running handlers,
    // to keep the stack small; but a handler that blocks them for this long is assumed to be waiting for a
    // report itself.
    static constexpr int kNestedDeliveries = 16;
    static constexpr int kNestedPatience = 100;  // milliseconds

    CURLM* const m_multi;
    HttpTransfer* m_active = nullptr;  // first of the running transfers
    TransferQueue<&HttpTransfer::nextNews> m_news;
    bool m_noticeOwed = false;  // a notice to the event loop is still to be posted

    std::mutex m_lock;
    TransferQueue<&HttpTransfer::nextCommand> m_commands;
    TransferQueue<&HttpTransfer::nextReport> m_outbox;
    TransferQueue<&HttpTransfer::nextReport> m_inbox;  // reports under delivery
    bool m_polling = false;
    bool m_notified = false;
    bool m_stopping = false;

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
    while (m_active != nullptr) end(*m_active);
    curl_multi_cleanup(m_multi);
}

void HttpNetwork::Data::push(bool HttpTransfer::*command, TransferPointer transfer) noexcept {
    bool wake = false;
    {
        const std::lock_guard guard(m_lock);
        (*transfer).*command = true;
        if (!std::exchange(transfer->hasCommand, true)) m_commands.push(std::move(transfer));
        wake = std::exchange(m_polling, false);
    }
    if (wake) curl_multi_wakeup(m_multi);
}

void HttpNetwork::Data::run() noexcept {
    static constexpr int kLongest = 60'000;  // milliseconds; a command ends the wait at once
    static constexpr int kShort = 10;
    ::pthread_setname_np(::pthread_self(), kNetworkThread);
    for (Turn turn = exchange(); turn != Turn::Stop; turn = exchange()) {
        if (turn != Turn::Work) poll(turn == Turn::Poll ? kLongest : kShort);
        handleCommands();
        int running = 0;
        curl_multi_perform(m_multi, &running);
        readMessages();
    }
}

// Hands over the reports. The result says what to do next: poll when there are no commands.
HttpNetwork::Data::Turn HttpNetwork::Data::exchange() noexcept {
    bool notify = false;
    Turn turn = Turn::Work;
    {
        const std::lock_guard guard(m_lock);
        if (m_stopping) return Turn::Stop;
        m_noticeOwed = m_noticeOwed || !m_news.empty();
        while (TransferPointer transfer = m_news.pop()) {
            transfer->hasNews = false;
            transfer->reportedBytes = static_cast<std::int32_t>(transfer->received);
            transfer->reportedEnd = transfer->ended;
            if (!std::exchange(transfer->hasReport, true)) m_outbox.push(std::move(transfer));
        }
        notify = m_noticeOwed && !std::exchange(m_notified, true);
        m_noticeOwed = false;
        m_polling = m_commands.empty();
        if (m_polling) turn = Turn::Poll;
    }
    if (!notify || postNotice()) return turn;
    m_noticeOwed = true;
    const std::lock_guard guard(m_lock);
    m_notified = false;
    return turn == Turn::Poll ? Turn::PollShortly : turn;
}

// False when out of memory.
bool HttpNetwork::Data::postNotice() noexcept {
    try {
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

void HttpNetwork::Data::poll(int milliseconds) noexcept {
    static constexpr std::chrono::milliseconds kUntilMemory{10};
    if (curl_multi_poll(m_multi, nullptr, 0, milliseconds, nullptr) != CURLM_OK)
        std::this_thread::sleep_for(kUntilMemory);
}

void HttpNetwork::Data::handleCommands() noexcept {
    while (true) {
        TransferPointer transfer;
        bool starts = false;
        bool ends = false;
        {
            const std::lock_guard guard(m_lock);
            m_polling = false;
            transfer = m_commands.pop();
            if (!transfer) return;
            transfer->hasCommand = false;
            starts = std::exchange(transfer->startWanted, false);
            ends = std::exchange(transfer->endWanted, false);
        }
        if (starts) begin(transfer);
        if (ends && transfer->self) end(*transfer);
    }
}

void HttpNetwork::Data::begin(const TransferPointer& transfer) noexcept {
    HttpTransfer& started = *transfer;
    started.self = transfer;
    started.news = &m_news;
    started.previousActive = nullptr;
    started.nextActive = m_active;
    if (m_active != nullptr) m_active->previousActive = &started;
    m_active = &started;
    const CURLMcode code = curl_multi_add_handle(m_multi, started.easy);
    if (code == CURLM_OK) return;
    started.failure = curl_multi_strerror(code);
    end(started);
}

void HttpNetwork::Data::end(HttpTransfer& transfer) noexcept {
    transfer.ended = true;
    transfer.listNews();
    curl_multi_remove_handle(m_multi, transfer.easy);
    transfer.readStatus();
    HttpTransfer*& before =
        transfer.previousActive == nullptr ? m_active : transfer.previousActive->nextActive;
    before = transfer.nextActive;
    if (transfer.nextActive != nullptr) transfer.nextActive->previousActive = transfer.previousActive;
    transfer.self.reset();
}

void HttpNetwork::Data::readMessages() noexcept {
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(m_multi, &left)) {
        if (message->msg != CURLMSG_DONE) continue;
        char* transfer = nullptr;
        curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &transfer);
        auto& ended = *reinterpret_cast<HttpTransfer*>(transfer);
        ended.readFailure(message->data.result);
        end(ended);
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
    for (Report report = nextReport(); report.transfer; report = nextReport()) {
        m_patience.stop();
        dispatch(report);
    }
    --m_depth;
    m_patience.stop();
    if (std::exchange(m_deferred, false)) QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void HttpNetwork::Data::takeOutbox() {
    const std::lock_guard guard(m_lock);
    m_notified = false;
    m_inbox.take(m_outbox);
}

// Without a transfer when there are no more reports.
Report HttpNetwork::Data::nextReport() {
    const std::lock_guard guard(m_lock);
    TransferPointer transfer = m_inbox.pop();
    if (!transfer) return {};
    HttpTransfer& source = *transfer;
    source.hasReport = false;
    return {std::move(transfer), source.reportedBytes, source.reportedEnd};
}

void HttpNetwork::Data::dispatch(const Report& report) {
    HttpTransfer& transfer = *report.transfer;
    if (transfer.client != nullptr && report.bytes > 0)
        transfer.client->report(report.transfer, report.bytes);
    if (transfer.client != nullptr && report.ended) transfer.client->finish(report.transfer);
}

HttpNetwork::HttpNetwork(Authorities authorities) : m_authorities(std::move(authorities)) {}

HttpNetwork::~HttpNetwork() = default;

void HttpNetwork::open() {
    if (!m_data) m_data = std::make_unique<Data>();
}

void HttpNetwork::start(TransferPointer transfer) {
    open();
    m_data->push(&HttpTransfer::startWanted, std::move(transfer));
}

void HttpNetwork::abort(TransferPointer transfer) noexcept {
    if (m_data) m_data->push(&HttpTransfer::endWanted, std::move(transfer));
}

}  // namespace relay
