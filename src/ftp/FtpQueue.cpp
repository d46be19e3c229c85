// SPDX-License-Identifier: GPL-3.0-or-later
#include "ftp/FtpQueue.h"

#include "core/FileNames.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "ftp/FtpFileSource.h"
#include "ftp/FtpLogin.h"

#include <algorithm>
#include <utility>

namespace relay {

namespace {
constexpr std::size_t kNamedFailures = 20;
}  // namespace

void FtpQueue::begin(bool again) {
    std::vector<FtpFileEnd> published = std::move(m_published);
    *this = {};
    if (again) m_published = std::move(published);
}

std::string FtpQueue::take(const FtpUpload& upload, std::string remotePath) {
    std::int64_t size = 0;
    std::string problem = failureOf([&] {
                              refuseControlBytes(upload.remoteName, "The file name");
                              size = sizeToSend(upload.file);
                          }).value_or("");
    if (!problem.empty()) {
        add({.file = upload.file, .remotePath = std::move(remotePath), .problem = problem});
        return problem;
    }
    m_waiting.push_back({upload, std::move(remotePath), size});
    m_progress.size += size;
    ++m_progress.files;
    return {};
}

const FtpUpload& FtpQueue::next() {
    const FtpUpload& upload = m_waiting[m_index++].upload;
    m_sentBefore = m_progress.sent;
    m_progress.file = static_cast<int>(m_index);
    m_progress.name = getFileNameFromFile(upload.file);
    m_progress.fileSent = m_progress.fileSize = 0;
    return upload;
}

void FtpQueue::moved(std::int64_t sent, std::int64_t size) {
    m_progress.fileSent = sent;
    m_progress.fileSize = size;
    m_progress.sent = m_sentBefore + sent;
}

void FtpQueue::end(FtpFileEnd end, bool passed) {
    const Waiting& file = m_waiting[m_index - 1];
    end.file = file.upload.file;
    end.remotePath = file.remotePath;
    m_progress.sent = m_sentBefore + (passed ? file.size : end.bytes);
    add(std::move(end));
}

void FtpQueue::skip(const std::string& problem) {
    const Waiting& file = m_waiting[m_index++];
    add({.file = file.upload.file, .remotePath = file.remotePath, .problem = problem});
}

void FtpQueue::add(FtpFileEnd end) {
    if (end.ok) m_published.push_back(end);
    m_ended.push_back(std::move(end));
}

std::vector<FtpFileEnd> FtpQueue::waiting() const {
    std::vector<FtpFileEnd> files;
    for (const Waiting& file : m_waiting)
        files.push_back({.file = file.upload.file, .remotePath = file.remotePath});
    return files;
}

std::vector<FtpFileEnd> FtpQueue::failed() const {
    std::vector<FtpFileEnd> failed;
    for (const FtpFileEnd& file : m_ended)
        if (!file.ok) failed.push_back(file);
    return failed;
}

std::string FtpQueue::failureSummary() const {
    const std::vector<FtpFileEnd> files = failed();
    if (files.empty()) return {};
    std::string words = std::to_string(files.size()) + " of " + std::to_string(m_ended.size()) +
                        (m_ended.size() == 1 ? " file was" : " files were") + " not sent: ";
    for (std::size_t i = 0; i < std::min(files.size(), kNamedFailures); ++i)
        words += (i == 0 ? "" : ", ") + escapeControlCharacters(getFileNameFromFile(files[i].file));
    return files.size() > kNamedFailures ? words + ", ..." : words;
}

std::string FtpQueue::failureReasons() const {
    std::string words;
    const std::vector<FtpFileEnd> files = failed();
    for (std::size_t i = 0; i < std::min(files.size(), kNamedFailures); ++i)
        words += (i == 0 ? "" : "\n") + getFileNameFromFile(files[i].file) + ": " + files[i].problem;
    return words;
}

}  // namespace relay
