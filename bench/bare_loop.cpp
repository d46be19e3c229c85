// SPDX-License-Identifier: GPL-3.0-or-later
// The pool's reference: the same requests in a bare libcurl multi_poll loop on one thread, with the same
// protocol settings and reused handles; SSL_CERT_FILE names the bundle for https.
// Usage: bench_bare_loop URL SLOTS REQUESTS; prints "requests/s  CPU microseconds/request  peak KiB".
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <curl/curl.h>
#include <string>
#include <sys/resource.h>
#include <vector>

namespace {

struct Slot final {
    CURL* easy = nullptr;
    std::string url;
    std::string body;
    std::string response;
};

std::size_t take(char* bytes, std::size_t size, std::size_t count, void* slot) {
    static_cast<Slot*>(slot)->response.append(bytes, size * count);
    return size * count;
}

void setUp(Slot& slot, curl_slist* headers) {
    slot.easy = curl_easy_init();
    curl_easy_setopt(slot.easy, CURLOPT_PRIVATE, &slot);
    curl_easy_setopt(slot.easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(slot.easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(slot.easy, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(slot.easy, CURLOPT_PROXY, "");
    if (const char* const bundle = std::getenv("SSL_CERT_FILE"))
        curl_easy_setopt(slot.easy, CURLOPT_CAINFO, bundle);
    curl_easy_setopt(slot.easy, CURLOPT_CAPATH, nullptr);
    curl_easy_setopt(slot.easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_0));
    curl_easy_setopt(slot.easy, CURLOPT_USERAGENT, "Dart Communications PowerTCP");
    curl_easy_setopt(slot.easy, CURLOPT_HTTPHEADER, headers);
    curl_easy_setopt(slot.easy, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(slot.easy, CURLOPT_MAXREDIRS, 10L);
    curl_easy_setopt(slot.easy, CURLOPT_FORBID_REUSE, 1L);
    curl_easy_setopt(slot.easy, CURLOPT_WRITEFUNCTION, take);
    curl_easy_setopt(slot.easy, CURLOPT_WRITEDATA, &slot);
}

// Every second request is a POST; about 150 bytes of query or body, as in bench/pool.cpp.
void start(CURLM* multi, Slot& slot, const std::string& url, long number) {
    const std::string data = "url=http%3A%2F%2Fwww.example.com%2Fpage&number=" + std::to_string(number) +
                             "&title=" + std::string(90, 't');
    slot.response.clear();
    if (number % 2 == 0) {
        slot.url = url + "?" + data;
        curl_easy_setopt(slot.easy, CURLOPT_HTTPGET, 1L);
    } else {
        slot.url = url;
        slot.body = data;
        curl_easy_setopt(slot.easy, CURLOPT_POST, 1L);
        curl_easy_setopt(slot.easy, CURLOPT_POSTFIELDSIZE, static_cast<long>(slot.body.size()));
        curl_easy_setopt(slot.easy, CURLOPT_POSTFIELDS, slot.body.c_str());
    }
    curl_easy_setopt(slot.easy, CURLOPT_URL, slot.url.c_str());
    curl_multi_add_handle(multi, slot.easy);
}

// Takes the ended requests and starts the next ones; returns the number of successes.
long advance(CURLM* multi, const std::string& url, long& started, long requests, long& ended) {
    long good = 0;
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(multi, &left)) {
        CURL* const easy = message->easy_handle;
        char* slot = nullptr;
        long code = 0;
        curl_easy_getinfo(easy, CURLINFO_PRIVATE, &slot);
        curl_easy_getinfo(easy, CURLINFO_RESPONSE_CODE, &code);
        curl_multi_remove_handle(multi, easy);
        ++ended;
        if (code > 0 && code < 499) ++good;
        if (started < requests) start(multi, *reinterpret_cast<Slot*>(slot), url, started++);
    }
    return good;
}

double cpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    const std::string url = argv[1];
    const long requests = std::atol(argv[3]);
    curl_global_init(CURL_GLOBAL_DEFAULT);
    CURLM* const multi = curl_multi_init();
    curl_slist* const headers = curl_slist_append(nullptr, "Accept:");
    std::vector<Slot> slots(static_cast<std::size_t>(std::atol(argv[2])));
    for (Slot& slot : slots) setUp(slot, headers);

    const auto begin = std::chrono::steady_clock::now();
    const double cpu = cpuSeconds();
    long started = 0;
    long ended = 0;
    long good = 0;
    for (Slot& slot : slots)
        if (started < requests) start(multi, slot, url, started++);
    while (ended < requests) {
        int running = 0;
        curl_multi_perform(multi, &running);
        good += advance(multi, url, started, requests, ended);
        if (ended < requests) curl_multi_poll(multi, nullptr, 0, 1000, nullptr);
    }
    const double used = cpuSeconds() - cpu;
    const double taken = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%.0f %.2f %ld\n", static_cast<double>(requests) / taken,
                used / static_cast<double>(requests) * 1e6, usage.ru_maxrss);
    for (Slot& slot : slots) curl_easy_cleanup(slot.easy);
    curl_slist_free_all(headers);
    curl_multi_cleanup(multi);
    return good == requests ? 0 : 1;
}
