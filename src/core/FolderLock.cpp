// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FolderLock.h"

#include "core/Descriptor.h"
#include "core/FileNames.h"
#include "core/FileStore.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <map>
#include <sys/file.h>
#include <thread>
#include <utility>

namespace relay {

namespace {

constexpr std::chrono::seconds kLockPatience(10);

// -1 if no lock file can be opened.
int openLockFile(int folder, const char* name) {
    Descriptor file(
        ::openat(folder, name, O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0600));
    if (file < 0 && (errno == EMFILE || errno == ENFILE)) throw fileFailure(name, errno);
    struct stat status {};
    if (file < 0 || ::fstat(file, &status) != 0 || !isOwnFile(status)) return -1;
    if ((status.st_mode & 077) != 0 && ::fchmod(file, 0600) != 0) return -1;
    return file.release();
}

// The lock of one folder, until this object is destroyed.
class HeldFolder final {
  public:
    HeldFolder() : m_name(".relay-lock-" + std::to_string(::geteuid())) {}
    ~HeldFolder() {
        if (m_lock >= 0 && hasName(m_lock)) ::unlinkat(m_folder, m_name.c_str(), 0);
    }
    HeldFolder(const HeldFolder&) = delete;
    HeldFolder& operator=(const HeldFolder&) = delete;

    void lock(Descriptor&& folder, const std::string& shown) {
        m_folder.reset(folder.release());
        const auto limit = std::chrono::steady_clock::now() + kLockPatience;
        for (;;) {
            Descriptor file(openLockFile(m_folder, m_name.c_str()));
            if (file < 0) return;
            while (::flock(file, LOCK_EX | LOCK_NB) != 0) {
                if (errno != EWOULDBLOCK && errno != EINTR) return;
                if (std::chrono::steady_clock::now() > limit)
                    throw fileFailure(shown, "In use by another program", 70);
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            }
            // The previous owner has removed this file: only a lock on the file that has the name now counts.
            if (!hasName(file)) continue;
            m_lock.reset(file.release());
            return;
        }
    }
    int depth = 1;

  private:
    std::string m_name;
    Descriptor m_folder;
    Descriptor m_lock;
};
// The folders locked by this thread, so that a nested lock does not wait for itself.
thread_local std::map<std::pair<dev_t, ino_t>, HeldFolder> heldFolders;

}  // namespace

FolderLock::FolderLock(const std::string& fileInFolder) {
    const std::string name = folderOf(fileInFolder);
    Descriptor folder(::open(name.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    struct stat status {};
    if (folder < 0 || ::fstat(folder, &status) != 0) throw fileFailure(name, errno);
    m_device = status.st_dev;
    m_inode = status.st_ino;
    const auto [held, isNew] = heldFolders.try_emplace({m_device, m_inode});
    if (!isNew) {
        ++held->second.depth;
        return;
    }
    try {
        held->second.lock(std::move(folder), name);
    } catch (...) {
        heldFolders.erase(held);
        throw;
    }
}

FolderLock::~FolderLock() {
    const auto held = heldFolders.find({m_device, m_inode});
    if (held != heldFolders.end() && --held->second.depth == 0) heldFolders.erase(held);
}

}  // namespace relay
