// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "transport/HttpTransfer.h"

#include <memory>
#include <utility>

namespace relay {

// A first-in, first-out queue of transfers. Each transfer contains its own link, so adding one never
// allocates. A transfer can be in only one queue of a kind.
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
    // Moves all transfers of the other queue to the end.
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
