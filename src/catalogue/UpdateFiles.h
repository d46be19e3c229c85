// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace relay {

struct Paths;

// A file that the update server publishes and the update stores.
struct UpdateFile final {
    std::string_view serverPath;
    std::string_view name;
    bool inWindows = true;   // else in the program folder
    bool ofEngines = false;  // describes engines; the others are word lists

    std::string path(const Paths& paths) const;
};

// In the order in which they are fetched.
inline constexpr std::array<UpdateFile, 5> kUpdateFiles{{
    {"/enginedata/krveng5.dat", "krveng5.dat", true, true},
    {"/enginedata/catkws.dat", "catkws.dat", true, true},
    {"/enginedata/top.kws", "top.kws", false},
    {"/enginedata/cat.kws", "cat.kws", false},
    {"/enginedata/kwreng.dat", "kwreng.dat", true, true},
}};
inline constexpr std::string_view kInstallerPath = "/update/krveng.exe";
inline constexpr std::string_view kNewsPath = "/news/news.dat";

// "http://HOST" or "http://HOST:PORT" for a server named as HOST or HOST:PORT; a leading "http://" and a
// closing slash do no harm. Throws Failure for any other text.
std::string serverAddress(std::string_view host);

}  // namespace relay
