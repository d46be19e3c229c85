// SPDX-License-Identifier: GPL-3.0-or-later
//
// Reading and replacing meta tags, in interleaved pairs. Reading is compared with a bare walk over the same
// page: memchr for "<", ">" and "<", the text between appended. Replacing in 1,000 files of 20 KB is compared
// with copying them with the same durable save, in the current folder: start it on a disk.
//
//   bench_metatags [pairs [files]]
#include "pagetools/MetaTags.h"

#include "Ratios.h"
#include "core/FileStore.h"
#include "pagetools/PageFiles.h"

#include <QTemporaryDir>

#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace relay;
using relay::bench::median;
using relay::bench::milliseconds;

constexpr std::size_t kPage = 1024 * 1024;

const std::string kHead =
    "<html>\r\n<head>\r\n<title>Lantern Bicycle Repairs</title>\r\n<meta name=\"keywords\" "
    "content=\"bicycles, "
    "repairs\">\r\n<meta name=\"description\" content=\"Mends bicycles\">\r\n</head>\r\n<body>\r\n";

// Tag upon tag, with hardly a word between.
std::string pageOfTags(std::size_t size) {
    std::string page = kHead;
    for (int row = 0; page.size() < size; ++row)
        page += "<tr class=\"row\"><td align=\"left\"><a href=\"/parts/" + std::to_string(row) +
                ".html\"><img src=\"/i/" + std::to_string(row) +
                ".gif\" width=\"80\" height=\"60\"></a></td></tr>\r\n";
    return page + "</body></html>";
}

// Paragraphs with a few tags in them.
std::string usualPage(std::size_t size) {
    std::string page = kHead;
    for (int row = 0; page.size() < size; ++row)
        page +=
            "<p>Every wheel that comes in is trued by hand, <b>checked</b> for loose spokes and greased "
            "before it "
            "goes\r\nback to its owner. A second paragraph of the same length would say <a href=\"/p" +
            std::to_string(row) +
            ".html\" title=\"more\">nothing new</a>, so this\r\none simply goes on until the line is "
            "full.</p>\r\n";
    return page + "</body></html>";
}

std::size_t bareWalk(std::string_view page) {
    std::string body;
    const char* at = page.data();
    const char* const end = at + page.size();
    const auto find = [end](const char* from, char c) {
        return static_cast<const char*>(std::memchr(from, c, static_cast<std::size_t>(end - from)));
    };
    for (at = find(at, '<'); at != nullptr;) {
        const char* const close = find(at, '>');
        if (close == nullptr) break;
        const char* const next = find(close + 1, '<');
        if (next != nullptr) body.append(close + 1, next);
        at = next;
    }
    return body.size();
}

std::size_t read(std::string_view page) {
    PageTexts texts;
    retrieveMetaTag(page, texts);
    if (texts.tags.keywords != "bicycles, repairs") std::exit(1);
    return texts.body.size();
}

// Repeated until it takes a while; milliseconds for one.
template <typename Work>
double timeOf(Work&& work) {
    constexpr int kTimes = 20;
    std::size_t sum = 0;
    const double all = milliseconds([&] {
        for (int i = 0; i < kTimes; ++i) sum += work();
    });
    benchmark::DoNotOptimize(sum);
    return all / kTimes;
}

void compareReading(const char* name, const std::string& page, const std::string& twice, int pairs,
                    double wanted) {
    std::vector<double> bare;
    std::vector<double> ours;
    std::vector<double> doubled;
    for (int pair = 0; pair <= pairs; ++pair) {
        const double bareTime = timeOf([&] { return bareWalk(page); });
        const double ourTime = timeOf([&] { return read(page); });
        const double doubledTime = timeOf([&] { return read(twice); });
        if (pair == 0) continue;  // warms up
        bare.push_back(bareTime);
        ours.push_back(ourTime);
        doubled.push_back(doubledTime);
    }
    std::printf(
        "%-14s bare walk %.3f ms, retrieveMetaTag %.3f ms: speed %.2f of it (%.2f wanted); twice the page "
        "%.2f "
        "times (2.30 at most)\n",
        name, median(bare), median(ours), median(bare) / median(ours), wanted,
        median(doubled) / median(ours));
}

void compareReplacing(int pairs, int files) {
    constexpr std::size_t kFile = 20 * 1024;
    const QTemporaryDir folder(QStringLiteral("./bench-metatags-XXXXXX"));
    const std::string page = usualPage(kFile);
    std::vector<std::string> copied;
    std::vector<std::string> changed;
    for (int file = 0; file < files; ++file) {
        const std::string number = std::to_string(file);
        copied.push_back(folder.path().toStdString() + "/copy" + number + ".html");
        changed.push_back(folder.path().toStdString() + "/page" + number + ".html");
        writeFile(copied.back(), page);
        writeFile(changed.back(), page);
    }
    const MetaTagChange change{{"New", "new, words", "New words"}, MetaTagChange::Way::Replace, true};
    std::vector<double> ratios;
    for (int pair = 0; pair <= pairs; ++pair) {
        double copy = 0;
        double replace = 0;
        // File by file, as the speed of a disk changes within a second.
        for (std::size_t file = 0; file < copied.size(); ++file) {
            copy += milliseconds([&] { writeFile(copied[file], readFile(copied[file])); });
            replace += milliseconds([&] { changeFile(changed[file], change); });
        }
        if (pair == 0) continue;
        ratios.push_back(replace / copy);
        std::printf("%d files of 20 KB: copied in %.0f ms, replaced in %.0f ms: %.2f times\n", files, copy,
                    replace, ratios.back());
    }
    std::printf("median %.2f times (1.20 at most)\n", median(ratios));
}

}  // namespace

int main(int argc, char** argv) {
    const int pairs = argc > 1 ? std::atoi(argv[1]) : 9;
    const int files = argc > 2 ? std::atoi(argv[2]) : 1000;
    compareReading("page of tags", pageOfTags(kPage), pageOfTags(2 * kPage), pairs, 0.7);
    compareReading("usual page", usualPage(kPage), usualPage(2 * kPage), pairs, 0.25);
    compareReading("20 KB of tags", pageOfTags(20 * 1024), pageOfTags(40 * 1024), pairs, 0.7);
    compareReading("20 KB, usual", usualPage(20 * 1024), usualPage(40 * 1024), pairs, 0.25);
    compareReplacing(std::max(1, pairs / 3), files);
}
