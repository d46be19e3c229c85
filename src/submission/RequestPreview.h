// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace relay {

class Catalogue;
struct Services;

// Who would be sent what, for which website.
struct PreviewWish final {
    std::string engine;       // its name
    std::string websiteFile;  // its path
    std::string URL;          // empty: the website's first
    bool hidePassword = true;
};

// What an engine would be sent; nothing is sent.
struct RequestPreview final {
    std::string refusal;  // why nothing would be sent; all else is empty then
    bool isPost = false;
    std::string URL;      // as it stands on the wire
    std::string body;     // of a POST
    std::string warning;  // if a password would be sent that the website does not have; else empty

    const char* method() const noexcept { return isPost ? "POST" : "GET"; }
    // Names and values as the engine reads them, in their order.
    std::vector<std::pair<std::string, std::string>> fields() const;
};

// Throws Failure for an engine that is not loaded, a website file that cannot be read, and one without URLs.
RequestPreview previewRequest(const Services& services, const Catalogue& catalogue, const PreviewWish& wish);

// The URLs of a website file. Throws Failure when it cannot be read.
std::vector<std::string> websiteURLs(const std::string& websiteFile);

}  // namespace relay
