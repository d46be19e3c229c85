// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"

#include <string>
#include <string_view>

namespace relay {

class Prompts;

inline constexpr const char* kUrlIcon = "HTMLFile";

// Adds a URL with its local file, or none; the URL is the row's key. False, in silence, when it is there
// already in any mix of case.
bool addNewItem(Rows& list, std::string_view url, std::string_view localFile = {});
// The text of the first highlighted row, or empty.
std::string getFirstSelectedItem(const Rows& list);

// The operations on a website's URL list: the ways in and out that a user drives. Each shows its
// failure and gives false.
class UrlList final {
  public:
    UrlList(Rows& list, Prompts& prompts) : m_list(list), m_prompts(prompts) {}

    // Asks for a URL and takes it as it stands.
    void addTypedURL();
    // Asks, then removes the highlighted rows.
    void DeleteURL();
    // Adds the fields of a text file that begin with "http" and hold a "."; a comma or a line end closes a
    // field, quotes around it go.
    bool loadURLFromFile(const std::string& file);
    // Asks for the file.
    bool loadURLs();
    // One URL a line. Replaces the file.
    bool saveURLToFile(const std::string& file);
    // Asks for the file, and before it replaces one. False when it failed or the user stepped back.
    bool saveURLs();

  private:
    Rows& m_list;
    Prompts& m_prompts;
};

}  // namespace relay
