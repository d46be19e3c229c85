// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "transport/HttpTransfer.h"

#include <memory>
#include <utility>

namespace relay {

// Transfers in a row, first in, first out. Each carries the link to the next itself, so that a full memory
// cannot keep one from being listed. A transfer stands in one queue of a kind at most.
template <std::shared_ptr<HttpTransfer> HttpTransfer::*kNext>
class TransferQueue final {
  public:
    TransferQueue() = default;
    ~TransferQueue() {
        while (pop()) {
        }
    }
    TransferQueue(const TransferQueue&) = delete;
    TransferQueue& operator=(const TransferQueue&) = delete;

    bool empty() const noexcept { return m_last == nullptr; }
    void push(std::shared_ptr<HttpTransfer> transfer) noexcept {
        HttpTransfer* const last = transfer.get();
        link(std::move(transfer), last);
    }
    // Null when empty.
    std::shared_ptr<HttpTransfer> pop() noexcept {
        std::shared_ptr<HttpTransfer> first = std::move(m_first);
        if (first) m_first = std::move((*first).*kNext);
        if (!m_first) m_last = nullptr;
        return first;
    }
    // All of the other queue.
    void take(TransferQueue& other) noexcept {
        if (!other.empty()) link(std::move(other.m_first), std::exchange(other.m_last, nullptr));
    }

  private:
    void link(std::shared_ptr<HttpTransfer> first, HttpTransfer* last) noexcept {
        std::shared_ptr<HttpTransfer>& place = m_last == nullptr ? m_first : (*m_last).*kNext;
        place = std::move(first);
        m_last = last;
    }

    std::shared_ptr<HttpTransfer> m_first;
    HttpTransfer* m_last = nullptr;
};

}  // namespace relay
