// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace relay {

// The per-user store: strings by application, section and key, in one INI file that only its owner can read
// (mode 0600). What is set reaches the disk at save(), and when the store is destroyed at the latest. Only
// what differs from the file as this program last saw it is written, into the file as it then stands: what
// other programs wrote meanwhile stays. A link in the file's place gives way to a copy of what it leads to; a
// pipe or a device reads as an empty store that cannot be written.
class SettingsStore final {
  public:
    explicit SettingsStore(const std::string& file);
    ~SettingsStore();
    SettingsStore(const SettingsStore&) = delete;
    SettingsStore& operator=(const SettingsStore&) = delete;

    std::string value(std::string_view application, std::string_view section, std::string_view key,
                      std::string_view fallback = {}) const;
    void setValue(std::string_view application, std::string_view section, std::string_view key,
                  std::string_view value);
    // Writes what was set, and takes over what other programs wrote. Throws Failure with the file and the
    // reason; what could not be written stays for the next time.
    void save();
    // The same where a failure is not to be told.
    bool trySave() noexcept;
    // For a file that was not understood: before anything else is written to it, it is copied beside itself,
    // to "settings.ini.bad" (mode 0600).
    void keepFileBeforeSave();

  private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

}  // namespace relay
