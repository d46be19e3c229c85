// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/TestHome.h"

#include <QElapsedTimer>
#include <QEventLoop>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <sys/stat.h>

namespace relay::test {

TestHome::TestHome() : m_paths(Paths::insideHome(m_folder.path().toStdString())) {
    std::filesystem::create_directories(m_paths.WindowsPath);
}

std::string TestHome::path(std::string_view relative) const {
    return m_folder.path().toStdString() + "/" + std::string(relative);
}

std::string TestHome::write(std::string_view relative, std::string_view bytes) const {
    const std::filesystem::path file = path(relative);
    std::filesystem::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!stream.flush()) throw std::runtime_error("cannot write " + file.string());
    return file.string();
}

std::string TestHome::writeWebsite(std::string_view relative, const std::vector<std::string>& urls,
                                   std::string_view fields) const {
    std::string text = "[Web Site Info]\r\nVersion=6.0\r\n";
    text.append(fields).append("LastURL=").append(std::to_string(urls.size())).append("\r\n[URL]\r\n");
    for (std::size_t i = 0; i < urls.size(); ++i)
        text.append("URL").append(std::to_string(i + 1)).append("=").append(urls[i]).append("\r\n");
    return write(relative, text);
}

std::string TestHome::read(std::string_view relative) const {
    std::ifstream stream(path(relative), std::ios::binary);
    if (!stream) throw std::runtime_error("cannot read " + path(relative));
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    return bytes.str();
}

unsigned modeOf(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777u : 0;
}

bool waitUntil(const std::function<bool()>& condition, int limitMilliseconds) {
    QElapsedTimer elapsed;
    elapsed.start();
    QEventLoop loop;
    while (!condition()) {
        if (elapsed.elapsed() > limitMilliseconds) return false;
        loop.processEvents(QEventLoop::AllEvents, 20);
    }
    return true;
}

}  // namespace relay::test
