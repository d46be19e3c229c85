// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/DescriptorBuffer.h"

#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace relay {

DescriptorBuffer::DescriptorBuffer(int descriptor) : m_descriptor(descriptor) {
    setp(m_bytes.data(), m_bytes.data() + m_bytes.size());
}

DescriptorBuffer::~DescriptorBuffer() {
    flushPending();
}

DescriptorBuffer::int_type DescriptorBuffer::overflow(int_type character) {
    if (!flushPending()) return traits_type::eof();
    if (!traits_type::eq_int_type(character, traits_type::eof())) {
        *pptr() = traits_type::to_char_type(character);
        pbump(1);
    }
    return traits_type::not_eof(character);
}

int DescriptorBuffer::sync() {
    return flushPending() ? 0 : -1;
}

bool DescriptorBuffer::flushPending() {
    const char* from = pbase();
    while (m_error == 0 && from < pptr()) {
        const ssize_t written = ::write(m_descriptor, from, static_cast<std::size_t>(pptr() - from));
        if (written >= 0) {
            from += written;
        } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
            pollfd writable{m_descriptor, POLLOUT, 0};
            ::poll(&writable, 1, -1);
        } else if (errno != EINTR) {
            m_error = errno;
        }
    }
    setp(m_bytes.data(), m_bytes.data() + m_bytes.size());
    return m_error == 0;
}

}  // namespace relay
