// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace relay {

class Catalogue;
struct Services;

// What to preview.
struct PreviewWish final {
    std::string engine;       // its name
    std::string websiteFile;  // its path
    std::string URL;          // empty: the website's first
    bool hidePassword = true;
};

// What would be sent to an engine. Nothing is sent.
struct RequestPreview final {
    std::string refusal;  // why nothing would be sent; all else is empty then
    std::string warning;  // the engine would be sent an empty password
    bool isPost = false;
    std::string URL;   // as it stands on the wire
    std::string body;  // of a POST

    const char* method() const noexcept { return isPost ? "POST" : "GET"; }
    // The decoded names and values of the query and the body, in order.
    std::vector<std::pair<std::string, std::string>> fields() const;
};

// Throws Failure for an engine that is not loaded, a website file that cannot be read, and one without URLs.
RequestPreview previewRequest(const Services& services, const Catalogue& catalogue, const PreviewWish& wish);

// The URLs of a website file. Throws Failure when it cannot be read.
std::vector<std::string> websiteURLs(const std::string& websiteFile);

}  // namespace relay
