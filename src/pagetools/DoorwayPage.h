// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

// What a doorway page is made of. Members are named after their controls.
struct DoorwayFields final {
    static constexpr std::size_t kKeywords = 8;

    std::string txtTitle;
    std::array<std::string, kKeywords> txtKeywords;
    std::string txtDescription;
    std::string cboSiteURL;
    std::string txtSubTitle1;
    std::string txtSubTitle2;
    std::string txtSubTitle3;
    std::string txtSummary;
    std::string txtImageURL;
    std::string txtCompany;
    std::string txtFileLocation;  // the folder for the pages

    bool operator==(const DoorwayFields&) const = default;
};

// A key of a profile file and its field.
struct DoorwayKey final {
    std::string_view key;
    std::string& (*field)(DoorwayFields& fields);
    bool isLong = false;  // may have more than 559 characters
};
const std::vector<DoorwayKey>& doorwayKeys();

// The text of every page, with its last line end; lines end with CR LF. Values go into it unescaped.
// `makersAddress` is shown at the end.
std::string doorwayPage(const DoorwayFields& fields, std::string_view makersAddress);
// A keyword's file: blanks become "_", and so does what a name in a folder must not have.
std::string doorwayFileName(std::string_view keyword);

// Sets the keywords, the first eight of a list, and clears the other boxes.
void setDoorwayKeywords(DoorwayFields& fields, const std::vector<std::string>& keywords);

}  // namespace relay
