// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

enum class Severity { Off, Notice, Warning, Error };

std::string_view severityName(Severity severity) noexcept;  // "off", "notice", "warning", "error"
// In any case; nullopt for another word.
std::optional<Severity> severityOf(std::string_view name) noexcept;

// Something that was found on a page.
struct PageFinding final {
    Severity severity = Severity::Notice;
    std::string_view rule;  // its name, which lives as long as the program
    std::size_t line = 1;   // of the page, from 1
    std::string found;
};

// The findings on one page.
struct FindingsOfPage final {
    std::string address;
    std::vector<PageFinding> findings;
};

}  // namespace relay
