// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <sys/types.h>

namespace relay {

// Keeps this program's other processes from changing files of the folder during a read, change and write: an
// advisory lock on a file in the folder that only the user can open. It is removed at the end; the lock of a
// killed program does not count. If that file cannot be made or is not the user's (a read-only folder, a file
// system without locks), work continues without a lock. A thread may nest locks and must release them itself.
// Throws Failure when there is no such folder, and when another program has had the lock for ten seconds.
class FolderLock final {
  public:
    explicit FolderLock(const std::string& fileInFolder);
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

  private:
    dev_t m_device = 0;  // of the folder
    ino_t m_inode = 0;
};

}  // namespace relay
