// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <sys/types.h>

namespace relay {

// Holds off other programs of ours that change files of the same folder, for a read, change and write in one
// piece. An advisory lock on a file in the folder that only the user can open, so that no other user can hold
// it; it is removed at the end, and a killed program's lock is none. Where that file cannot be made or is not
// the user's (a folder that cannot be written, a file system without locks), the work goes on without a lock.
// A thread may take it again while it holds it; it ends in the thread that took it. Throws Failure when there
// is no such folder, and when another program has held it for ten seconds.
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
