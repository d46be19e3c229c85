// SPDX-License-Identifier: GPL-3.0-or-later
// Saves and loads website files of 1,000 and 10,000 URLs, compared with a plain read of the same file. The
// time per URL must not depend on their number.
#include "SilentPrompts.h"
#include "core/Clock.h"
#include "core/FileStore.h"
#include "projects/UrlList.h"
#include "projects/UrlsFromPage.h"
#include "projects/WebsiteFile.h"
#include "session/Session.h"
#include "transport/frmHTTP.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

using namespace relay;

void fill(WebsiteFields& fields, std::int64_t urls) {
    fields.txtSiteTitle = "A shop of many pages";
    for (std::int64_t i = 0; i < urls; ++i)
        addNewItem(fields.lsvSiteURLs, "http://www.shop.example/pages/page" + std::to_string(i) + ".html",
                   "/home/ann/pages/page" + std::to_string(i) + ".html");
}

void saveWebsite(benchmark::State& state) {
    const QTemporaryDir folder;
    const std::string path = folder.path().toStdString() + "/site.kws";
    WebsiteFields fields;
    fill(fields, state.range(0));
    CustomEngines customEngines;
    bench::SilentPrompts prompts;
    WebsiteFile website(prompts);
    for ([[maybe_unused]] auto _ : state) {
        website.save(path, fields, customEngines, SaveOver::Anything);
        if (state.range(1) == 0) removeFile(path);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetLabel(state.range(1) == 0 ? "new file" : "over the old file");
}
BENCHMARK(saveWebsite)->Args({1000, 0})->Args({10000, 0})->Args({1000, 1})->Args({10000, 1});

void loadWebsite(benchmark::State& state) {
    const QTemporaryDir folder;
    const std::string path = folder.path().toStdString() + "/site.kws";
    WebsiteFields fields;
    fill(fields, state.range(0));
    CustomEngines customEngines;
    bench::SilentPrompts prompts;
    WebsiteFile website(prompts);
    website.save(path, fields, customEngines, SaveOver::Anything);
    for ([[maybe_unused]] auto _ : state) website.loadWebsiteFile(path, fields, customEngines, nullptr);
    state.SetItemsProcessed(state.iterations() * fields.lsvSiteURLs.count());
}
BENCHMARK(loadWebsite)->Arg(1000)->Arg(10000);

void readWebsiteBytes(benchmark::State& state) {
    const QTemporaryDir folder;
    const std::string path = folder.path().toStdString() + "/site.kws";
    WebsiteFields fields;
    fill(fields, state.range(0));
    CustomEngines customEngines;
    bench::SilentPrompts prompts;
    WebsiteFile(prompts).save(path, fields, customEngines, SaveOver::Anything);
    for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(readFile(path));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(readWebsiteBytes)->Arg(1000)->Arg(10000);

void linksOfAPage(benchmark::State& state) {
    std::string page;
    for (std::int64_t i = 0; i < state.range(0); ++i)
        page +=
            "<p>Some words in front of it <a href=\"page" + std::to_string(i) + ".html\">page</a></p>\r\n";
    const QTemporaryDir home;
    const SystemClock clock;
    bench::SilentPrompts prompts;
    const Session session(Paths::insideHome(home.path().toStdString()), clock, {}, prompts);
    frmHTTP fetcher(session.services);
    for ([[maybe_unused]] auto _ : state) {
        Rows urls;
        UrlsFromPage links(urls, fetcher, prompts);
        links.setPage("www.shop.example/pages/index.html");
        links.getURL(page);
        benchmark::DoNotOptimize(urls.count());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(linksOfAPage)->Arg(1000)->Arg(10000)->Arg(100000);

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
