// SPDX-License-Identifier: GPL-3.0-or-later
//
// A ranking run of 50 engines with 100 pages of 20 KB each, and its reference: the same addresses asked for
// in a bare libcurl multi_poll loop, one connection per engine, the same files written and renamed into
// place. Usage: bench_ranking_run make FOLDER ADDRESS | bare FOLDER | run FOLDER; the last two print pages
// per second. `make` writes the page that the server gives (FOLDER/page.html) and a home with its catalogue.
#include "SilentPrompts.h"
#include "core/Clock.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/IniFile.h"
#include "ranking/RankingPages.h"
#include "ranking/clsRanking.h"
#include "session/Session.h"

#include <QCoreApplication>

#include <chrono>
#include <cstdio>
#include <curl/curl.h>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using namespace relay;
using Time = std::chrono::steady_clock;

constexpr int kEngines = 50;
constexpr int kPages = 100;
constexpr std::size_t kPageBytes = 20 * 1024;
constexpr std::string_view kPhrase = "paper shop";

std::string homeOf(const std::string& folder) {
    return folder + "/home";
}

// Every second engine computes its next page, the others find it at the page's end.
void make(const std::string& folder, const std::string& address) {
    std::string page = "<html><body>\n<!-- results -->\n";
    for (int result = 0; page.size() < kPageBytes - 200; ++result)
        page += "<li><a href=http://www.site-" + std::to_string(result) +
                ".example/>A page of some site</a> " + std::string(200, 'w') + "\n";
    page +=
        "<!-- end of results -->\n<a href=\"" + address + "/page?q=paper+shop&amp;more=1\">Next page</a>\n";
    page.resize(kPageBytes, ' ');
    writeFile(folder + "/page.html", page);
    std::string engines = "[Engines]\r\n";
    for (int engine = 1; engine <= kEngines; ++engine)
        engines += std::to_string(engine) + "=Engine " + std::to_string(engine) + "\r\n";
    for (int engine = 1; engine <= kEngines; ++engine) {
        const bool isButton = engine % 2 == 0;
        engines += "[Engine " + std::to_string(engine) + "]\r\nEngineKey=/page\r\nEngineURL=" + address +
                   "/page\r\nQueryKeyword1=?q=\r\nResultStartString=<!-- results -->\r\n" +
                   "ResultEndString=<!-- end of results -->\r\nNoFoundString=No "
                   "pages\r\nStart=10\r\nPerPage=10\r\n" +
                   (isButton ? "LinkType=Button\r\nNextPage1=?q=\r\nNextPage2=&from=\r\nNextPage3=&n=\r\n"
                             : "NextPage1=Next page\r\n");
    }
    makeFolder(homeOf(folder) + "/data");
    writeFile(homeOf(folder) + "/data/kwreng.dat", engines);
}

void report(Time::time_point begin) {
    const double seconds = std::chrono::duration<double>(Time::now() - begin).count();
    std::printf("%.0f\n", kEngines * kPages / seconds);
}

int run(const std::string& folder) {
    const SystemClock clock;
    bench::SilentPrompts prompts;
    Session session(Paths::insideHome(homeOf(folder)), clock, {}, prompts);
    session.readSettings(SettingsReader::CommandLine);
    session.network.open();
    clsRanking ranking(session.services, QLocale::c());
    if (!ranking.Load()) return 1;
    ranking.state().setup = {
        "bench", {"www.site-7.example"}, std::string(kPhrase), RankLimit::Pages, std::to_string(kPages)};
    ranking.chkSelectAll_Click(true);
    std::filesystem::remove_all(homeOf(folder) + "/Reports/Ranking/bench");
    bool good = false;
    QObject::connect(&ranking, &clsRanking::searchEnded, [&good](const RankingEnd& end) {
        good = end.pages == kEngines * kPages && end.unsaved == 0;
        QCoreApplication::exit();
    });
    const Time::time_point begin = Time::now();
    if (!ranking.StartSearch()) return 1;
    QCoreApplication::exec();
    report(begin);
    return good ? 0 : 1;
}

// One engine of the bare loop.
struct Chain final {
    CURL* easy = nullptr;
    std::vector<std::string> addresses;
    std::string stem;  // of its files, without number and ending
    std::size_t page = 0;
    std::string body;
};

std::size_t take(char* bytes, std::size_t size, std::size_t count, void* chain) {
    static_cast<Chain*>(chain)->body.append(bytes, size * count);
    return size * count;
}

void start(CURLM* multi, Chain& chain) {
    chain.body.clear();
    curl_easy_setopt(chain.easy, CURLOPT_URL, chain.addresses[chain.page].c_str());
    curl_multi_add_handle(multi, chain.easy);
}

bool save(const Chain& chain) {
    const std::string path = chain.stem + std::to_string(chain.page + 1) + ".html";
    const std::string temporary = path + ".new";
    const int file = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    const bool good = file >= 0 && ::write(file, chain.body.data(), chain.body.size()) ==
                                       static_cast<ssize_t>(chain.body.size());
    ::close(file);
    return good && ::rename(temporary.c_str(), path.c_str()) == 0;
}

// The addresses that the run asks for, one after the other.
std::vector<Chain> makeChains(const std::string& folder) {
    std::vector<RankEngine> engines;
    readRankEngines(IniFile::load(homeOf(folder) + "/data/kwreng.dat"), engines);
    const std::string page = readFile(folder + "/page.html");
    const std::string keywords = praseSpace(kPhrase);
    const std::string pages = homeOf(folder) + "/Reports/Ranking/bare";
    std::filesystem::remove_all(pages);
    makeFolder(pages);
    std::vector<Chain> chains(engines.size());
    for (std::size_t i = 0; i < engines.size(); ++i) {
        std::string address = queryURL(engines[i], keywords);
        for (int number = 1; number <= kPages; ++number) {
            chains[i].addresses.push_back(address);
            address = getNextURL(engines[i], {page, address, number}, keywords);
        }
        const std::string name = pageFileName(engines[i].EngineName, 1);
        chains[i].stem = pages + "/" + name.substr(0, name.size() - std::string_view("1.html").size());
    }
    return chains;
}

int bare(const std::string& folder) {
    std::vector<Chain> chains = makeChains(folder);
    curl_global_init(CURL_GLOBAL_DEFAULT);
    const Time::time_point begin = Time::now();
    CURLM* const multi = curl_multi_init();
    curl_slist* const headers = curl_slist_append(nullptr, "Accept:");
    for (Chain& chain : chains) {
        chain.easy = curl_easy_init();
        curl_easy_setopt(chain.easy, CURLOPT_PRIVATE, &chain);
        curl_easy_setopt(chain.easy, CURLOPT_NOSIGNAL, 1L);
        curl_easy_setopt(chain.easy, CURLOPT_PROXY, "");
        curl_easy_setopt(chain.easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_0));
        curl_easy_setopt(chain.easy, CURLOPT_HTTPHEADER, headers);
        curl_easy_setopt(chain.easy, CURLOPT_FORBID_REUSE, 1L);
        curl_easy_setopt(chain.easy, CURLOPT_WRITEFUNCTION, take);
        curl_easy_setopt(chain.easy, CURLOPT_WRITEDATA, &chain);
        start(multi, chain);
    }
    bool good = true;
    std::size_t left = chains.size();
    while (left > 0) {
        int running = 0;
        curl_multi_perform(multi, &running);
        int waiting = 0;
        while (const CURLMsg* message = curl_multi_info_read(multi, &waiting)) {
            char* mine = nullptr;
            curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &mine);
            Chain& chain = *reinterpret_cast<Chain*>(mine);
            good = good && message->data.result == CURLE_OK && save(chain);
            curl_multi_remove_handle(multi, chain.easy);
            if (++chain.page < chain.addresses.size())
                start(multi, chain);
            else
                --left;
        }
        if (left > 0) curl_multi_poll(multi, nullptr, 0, 1000, nullptr);
    }
    report(begin);
    for (Chain& chain : chains) curl_easy_cleanup(chain.easy);
    curl_slist_free_all(headers);
    curl_multi_cleanup(multi);
    return good ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const std::string task = argc > 2 ? argv[1] : "";
    if (task == "make" && argc == 4) return make(argv[2], argv[3]), 0;
    if (task == "bare") return bare(argv[2]);
    if (task == "run") return run(argv[2]);
    return 2;
}
