// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace relay {

// The per-user settings: strings by application, section and key, in one INI file that only its owner can
// read (mode 0600). Changes reach the disk at save(), at the latest when the store is destroyed. Only changed
// values are written, into the file as it is then: what other programs wrote meanwhile stays. A link in place
// of the file is replaced by a copy of its target; a pipe or a device reads as an empty store that cannot be
// written.
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
    // Writes the changes and picks up what other programs wrote. Throws Failure with the file and the reason;
    // changes that could not be written are kept for the next save.
    void save();
    // The same for callers that ignore a failure.
    bool trySave() noexcept;
    // For a file that could not be understood: before the next write, copies it to "settings.ini.bad" beside
    // it (mode 0600).
    void keepFileBeforeSave();

  private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

}  // namespace relay
