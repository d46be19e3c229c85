// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FileStore.h"

#include "core/Descriptor.h"
#include "core/FileNames.h"
#include "core/Text.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <dirent.h>
#include <fcntl.h>
#include <map>
#include <mutex>
#include <random>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

namespace relay {

namespace {

SaveFault& saveFault() {
    static SaveFault fault;
    return fault;
}

// Fails the step where a test asks for it.
void step(SaveStep which, const std::string& path) {
    const int error = saveFault() ? saveFault()(which) : 0;
    if (error != 0) throw fileFailure(path, error);
}

// Large texts go in pieces, so that no write depends on the kernel's own limit.
void writeAll(int descriptor, std::string_view bytes, const std::string& path, bool faults) {
    constexpr std::size_t kPiece = 1024 * 1024;
    while (!bytes.empty()) {
        if (faults) step(SaveStep::Write, path);
        const ssize_t written = ::write(descriptor, bytes.data(), std::min(bytes.size(), kPiece));
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) throw fileFailure(path, errno);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

// The permissions the new file gets: those of the file it replaces, if there is one and it may be written.
mode_t permissionsFor(const std::string& path, Readable readable, bool& keep) {
    struct stat status {};
    keep = false;
    if (::lstat(path.c_str(), &status) == 0 && !S_ISLNK(status.st_mode)) {
        if (!S_ISREG(status.st_mode)) throw fileFailure(path, S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
        if (::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0) throw fileFailure(path, errno);
        keep = readable == Readable::Everyone;
    }
    if (readable == Readable::OwnerOnly) return 0600;
    return keep ? status.st_mode & 07777 : 0644;
}

// Random digits follow.
constexpr std::string_view kTemporaryStart = ".relay-00000000";

bool isTemporaryName(std::string_view name) {
    return name.size() > kTemporaryStart.size() && name.starts_with(kTemporaryStart) &&
           name.find_first_not_of("0123456789", kTemporaryStart.size()) == std::string_view::npos;
}

// A locked temporary file is still being written; an unlocked one was left by a program that is gone.
void removeIfStale(int folder, const char* name) {
    const Descriptor file(::openat(folder, name, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    if (file < 0 || ::fstat(file, &status) != 0 || !isOwnFile(status)) return;
    if (::flock(file, LOCK_EX | LOCK_NB) == 0) ::unlinkat(folder, name, 0);
}

// How many names the folder holds.
std::size_t removeStaleFiles(int folder) {
    DIR* const names = ::fdopendir(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (names == nullptr) return 0;
    std::size_t count = 0;
    for (const dirent* entry = ::readdir(names); entry != nullptr; entry = ::readdir(names), ++count) {
        if (isTemporaryName(entry->d_name)) removeIfStale(folder, entry->d_name);
    }
    ::closedir(names);
    return count;
}

// Reading a folder takes as long as it has names, so a large one is not read at every save: the reading is
// shared out over as many saves as keep its cost for each one small.
void tidyFolder(const std::string& path) {
    struct Tidied final {
        std::size_t names = 0;
        std::size_t saves = 0;
    };
    constexpr std::size_t kNamesForASave = 64;
    static std::mutex mutex;
    static std::map<std::pair<dev_t, ino_t>, Tidied> folders;
    const Descriptor folder(::open(folderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    struct stat status {};
    if (folder < 0 || ::fstat(folder, &status) != 0) return;
    const std::lock_guard guard(mutex);
    Tidied& tidied = folders[{status.st_dev, status.st_ino}];
    if (tidied.saves++ * kNamesForASave < tidied.names) return;
    tidied = {removeStaleFiles(folder), 1};
}

// A new file beside `path`, removed again unless it was renamed. It is locked as long as it is open.
class TemporaryFile final {
  public:
    TemporaryFile(const std::string& path, mode_t mode) {
        static thread_local std::random_device random;
        step(SaveStep::Create, path);
        for (int attempt = 0; attempt < 100; ++attempt) {
            const std::string digits = std::to_string(random()) + std::to_string(random());
            m_name = folderOf(path) + "/" + std::string(kTemporaryStart) + digits;
            m_descriptor = ::open(m_name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
            if (m_descriptor < 0 && errno != EEXIST) throw fileFailure(path, errno);
            if (m_descriptor >= 0 && isKept()) return;
            if (m_descriptor >= 0) ::close(std::exchange(m_descriptor, -1));
        }
        m_name.clear();
        throw fileFailure(path, EEXIST);
    }
    ~TemporaryFile() {
        if (!m_name.empty()) ::unlink(m_name.c_str());
        if (m_descriptor >= 0) ::close(m_descriptor);
    }
    TemporaryFile(TemporaryFile&& other) noexcept
        : m_name(std::exchange(other.m_name, {})), m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    TemporaryFile& operator=(TemporaryFile&&) = delete;

    int descriptor() const { return m_descriptor; }
    void flush(const std::string& path) {
        step(SaveStep::Flush, path);
        // The bytes and the size must be there before the name is; the times of the file may follow.
        if (::fdatasync(m_descriptor) != 0) throw fileFailure(path, errno);
    }
    void rename(const std::string& path) {
        step(SaveStep::Rename, path);
        if (::rename(m_name.c_str(), path.c_str()) != 0) throw fileFailure(path, errno);
        m_name.clear();
    }

  private:
    // False when another program took it for a stale one before it was locked.
    bool isKept() const {
        if (::flock(m_descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return false;
        return hasName(m_descriptor);
    }

    std::string m_name;
    int m_descriptor = -1;
};

// A temporary file with the bytes and the permissions that the file at `path` shall have.
TemporaryFile writtenBeside(const std::string& path, std::string_view bytes, Readable readable) {
    bool keep = false;
    const mode_t mode = permissionsFor(path, readable, keep);
    tidyFolder(path);
    TemporaryFile temporary(path, keep ? 0600 : mode);
    if (keep && ::fchmod(temporary.descriptor(), mode) != 0) throw fileFailure(path, errno);
    writeAll(temporary.descriptor(), bytes, path, true);
    return temporary;
}

void flushFolder(const std::string& path) {
    step(SaveStep::FolderFlush, path);
    const Descriptor folder(::open(folderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder < 0) throw fileFailure(path, errno);
    // Some file systems have nothing to flush for a folder.
    if (::fsync(folder) != 0 && errno != EINVAL && errno != ENOTSUP) throw fileFailure(path, errno);
}

// Keeps a replaced file alive until it is let go of. Giving its blocks back can take the file system as long
// as a flush does, so that happens beside the flush of the folder.
class ReplacedFile final {
  public:
    explicit ReplacedFile(const std::string& path)
        : m_file(::open(path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC)) {}

    void release() {
        if (m_file < 0) return;
        try {
            m_release = std::jthread([this] { m_file.reset(); });
        } catch (const std::system_error&) {
            // Without a thread to spare it is let go of at the end.
        }
    }

  private:
    Descriptor m_file;
    std::jthread m_release;
};

// Asks the system for pages of 2 MiB: filling a large text in pages of 4 KiB costs as much as reading it.
void takeLargePages(std::string& room) {
    constexpr std::uintptr_t kLargePage = 2u * 1024 * 1024;
    const auto start = (reinterpret_cast<std::uintptr_t>(room.data()) + kLargePage - 1) & ~(kLargePage - 1);
    const auto end = (reinterpret_cast<std::uintptr_t>(room.data()) + room.capacity()) & ~(kLargePage - 1);
    if (start < end) ::madvise(reinterpret_cast<void*>(start), end - start, MADV_HUGEPAGE);
}

}  // namespace

Failure fileFailure(const std::string& path, const std::string& reason, int number) {
    return Failure(escapeControlCharacters(path) + ": " + reason, number);
}

Failure fileFailure(const std::string& path, int error) {
    int number = 75;
    if (error == ENOENT) number = 53;
    if (error == ENOSPC || error == EDQUOT) number = 61;
    if (error == EACCES || error == EPERM || error == EROFS || error == ELOOP) number = 70;
    return fileFailure(path, std::generic_category().message(error), number);
}

std::string readFile(const std::string& path, std::size_t limit) {
    // Without O_NONBLOCK the opening of a pipe would wait for its other end.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (file < 0) throw fileFailure(path, errno);
    struct stat status {};
    if (::fstat(file, &status) != 0) throw fileFailure(path, errno);
    if (!S_ISREG(status.st_mode)) throw fileFailure(path, "Not a regular file", 75);
    const auto tooLarge = [&] { return fileFailure(path, "File too large", 75); };
    const std::size_t expected = static_cast<std::size_t>(status.st_size);
    if (expected > limit) throw tooLarge();
    // resize() clears each piece first, so pieces are small enough to stay in the cache. One byte more than
    // expected shows the end of the file without growing the text.
    constexpr std::size_t kPiece = 128 * 1024;
    std::string bytes;
    bytes.reserve(expected + 1);
    takeLargePages(bytes);
    for (;;) {
        const std::size_t size = bytes.size();
        const std::size_t room = bytes.capacity() - size;
        bytes.resize(size + (room == 0 ? kPiece : std::min(room, kPiece)));
        const ssize_t got = ::read(file, bytes.data() + size, bytes.size() - size);
        const int error = errno;
        bytes.resize(size + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
        if (got < 0 && error != EINTR) throw fileFailure(path, error);
        if (bytes.size() > limit) throw tooLarge();
        if (got == 0) return bytes;
    }
}

void writeFile(const std::string& path, std::string_view bytes, Readable readable) {
    TemporaryFile temporary = writtenBeside(path, bytes, readable);
    temporary.flush(path);
    ReplacedFile replaced(path);
    temporary.rename(path);
    replaced.release();
    flushFolder(path);
}

void replaceFile(const std::string& path, std::string_view bytes) {
    writtenBeside(path, bytes, Readable::Everyone).rename(path);
}

void appendFile(const std::string& path, std::string_view bytes, Readable readable) {
    const bool ownerOnly = readable == Readable::OwnerOnly;
    Descriptor file(::open(path.c_str(),
                           O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC,
                           ownerOnly ? 0600 : 0644));
    if (file < 0) throw fileFailure(path, errno);
    struct stat status {};
    if (::fstat(file, &status) != 0) throw fileFailure(path, errno);
    if (!S_ISREG(status.st_mode)) throw fileFailure(path, "Not a regular file", 75);
    if (ownerOnly && (status.st_mode & 077) != 0 && ::fchmod(file, 0600) != 0) throw fileFailure(path, errno);
    writeAll(file, bytes, path, false);
    if (file.reset() != 0) throw fileFailure(path, errno);
}

bool removeFile(const std::string& path) {
    if (::unlink(path.c_str()) == 0) return true;
    if (errno != ENOENT) throw fileFailure(path, errno);
    return false;
}

SaveFault setSaveFault(SaveFault fault) {
    return std::exchange(saveFault(), std::move(fault));
}

}  // namespace relay
