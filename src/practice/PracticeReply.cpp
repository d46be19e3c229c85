// SPDX-License-Identifier: GPL-3.0-or-later
#include "practice/PracticeReply.h"

namespace relay {

namespace {

std::string headStart(const PracticeReply& reply) {
    std::string head = "HTTP/1.1 " + std::to_string(reply.status) + ' ';
    head += statusWord(reply.status);
    head += "\r\nServer: korvel-practice\r\nContent-Type: " + reply.type + "\r\n";
    if (!reply.location.empty()) head += "Location: " + reply.location + "\r\n";
    head +=
        "Cache-Control: no-store\r\nX-Content-Type-Options: nosniff\r\n"
        "Content-Security-Policy: default-src 'none'; style-src 'unsafe-inline'\r\n";
    return head;
}

}  // namespace

std::string PracticeReply::head(std::size_t length) const {
    return headStart(*this) + "Content-Length: " + std::to_string(length) + "\r\nConnection: close\r\n\r\n";
}

std::string PracticeReply::headWithoutLength() const {
    return headStart(*this) + "Connection: close\r\n\r\n";
}

std::string_view statusWord(int status) noexcept {
    switch (status) {
        case 200:
            return "OK";
        case 204:
            return "No Content";
        case 301:
            return "Moved Permanently";
        case 302:
            return "Found";
        case 303:
            return "See Other";
        case 307:
            return "Temporary Redirect";
        case 308:
            return "Permanent Redirect";
        case 400:
            return "Bad Request";
        case 401:
            return "Unauthorized";
        case 403:
            return "Forbidden";
        case 404:
            return "Not Found";
        case 405:
            return "Method Not Allowed";
        case 413:
            return "Content Too Large";
        case 431:
            return "Request Header Fields Too Large";
        case 499:
            return "Client Closed Request";
        case 500:
            return "Internal Server Error";
        case 501:
            return "Not Implemented";
        case 503:
            return "Service Unavailable";
        default:
            return "Practice";
    }
}

}  // namespace relay
