// SPDX-License-Identifier: GPL-3.0-or-later
#include "transport/RequestUrl.h"

#include "core/Failure.h"
#include "core/Text.h"

#include <algorithm>

namespace relay {

namespace {

std::size_t authorityStart(std::string_view url) noexcept {
    const std::size_t scheme = url.find("://");
    std::size_t start = scheme == npos ? 0 : scheme + 3;
    // "http:///name" works too: extra slashes do not end the authority.
    while (start < url.size() && url[start] == '/') ++start;
    return start;
}

// Offset and length of "user:password@" in the URL; length 0 when there is none.
struct Credentials final {
    std::size_t offset = 0;
    std::size_t length = 0;
};

Credentials findCredentials(std::string_view url) noexcept {
    const std::size_t start = authorityStart(url);
    const std::string_view authority = url.substr(start, url.find_first_of("/?#", start) - start);
    const std::size_t at = authority.rfind('@');
    return at == npos ? Credentials() : Credentials{start, at + 1};
}

}  // namespace

std::string wireUrl(std::string_view url) {
    url = trim(url);
    if (hasControlByte(url)) throw Failure("The URL holds a control character");
    if (!startsWithNoCase(url, "http://") && !startsWithNoCase(url, "https://"))
        throw Failure("Only http:// and https:// addresses can be requested");
    if (findCredentials(url).length > 0) throw Failure("The URL holds a user name or password");
    url = url.substr(0, url.find('#'));
    const std::size_t query = std::min(url.find('?'), url.size());
    const std::size_t path = std::min(url.find('/', authorityStart(url)), query);
    std::string wire(url.substr(0, path));
    for (const char byte : url.substr(path, query - path))
        if (static_cast<unsigned char>(byte) < 0x80)
            wire += byte;
        else
            appendHex(wire += '%', byte, "0123456789abcdef");
    return replaceAll(wire.append(url.substr(query)), " ", "%20");
}

std::string loggableUrl(std::string_view url) {
    std::string masked(url);
    const Credentials credentials = findCredentials(masked);
    if (credentials.length > 0) masked.replace(credentials.offset, credentials.length, "***@");
    std::string line;
    line.reserve(masked.size());
    for (const char byte : masked)
        if (isControlByte(byte))
            appendHex(line += '%', byte);
        else
            line += byte;
    return line;
}

}  // namespace relay
