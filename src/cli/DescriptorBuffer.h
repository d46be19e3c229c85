// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <streambuf>

namespace relay {

// A stream buffer for a file descriptor that stores why a write failed, which the standard streams do not.
// After a failure nothing more is written.
class DescriptorBuffer final : public std::streambuf {
  public:
    explicit DescriptorBuffer(int descriptor);
    ~DescriptorBuffer() override;
    DescriptorBuffer(const DescriptorBuffer&) = delete;
    DescriptorBuffer& operator=(const DescriptorBuffer&) = delete;

    // The errno of the failed write, or 0.
    int error() const noexcept { return m_error; }

  protected:
    int_type overflow(int_type character) override;
    int sync() override;

  private:
    bool flushPending();

    int m_descriptor;
    int m_error = 0;
    std::array<char, 16384> m_bytes;
};

}  // namespace relay
