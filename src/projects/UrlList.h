// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"

#include <string>
#include <string_view>

namespace relay {

class Prompts;

inline constexpr const char* kUrlIcon = "HTMLFile";

// Adds a URL with its local file, if any; the URL is the row's key. Returns false, without a message, when it
// is already there in any case.
bool addNewItem(Rows& list, std::string_view url, std::string_view localFile = {});
// The text of the first highlighted row, or empty.
std::string getFirstSelectedItem(const Rows& list);

// The user's operations on a website's URL list. Each shows its failure and returns false.
class UrlList final {
  public:
    UrlList(Rows& list, Prompts& prompts) : m_list(list), m_prompts(prompts) {}

    // Asks for a URL and adds it unchecked.
    void addTypedURL();
    // Asks, then removes the highlighted rows.
    void DeleteURL();
    // Adds the fields of a text file that begin with "http" and contain a "."; a comma or a line end closes a
    // field, quotes around it are removed.
    bool loadURLFromFile(const std::string& file);
    // Asks for the file.
    bool loadURLs();
    // Writes one URL per line. Replaces the file.
    bool saveURLToFile(const std::string& file);
    // Asks for the file, and before replacing one. False when it failed or the user cancelled.
    bool saveURLs();

  private:
    Rows& m_list;
    Prompts& m_prompts;
};

}  // namespace relay
