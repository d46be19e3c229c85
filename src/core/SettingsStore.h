// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace relay {

// The per-user store: strings by application, section and key, in one INI file that only its owner can read
// (mode 0600). Writes reach the disk at sync() and when the store is destroyed, at the latest. A link in the
// file's place gives way to a copy of what it leads to when the first value is set; a pipe or a device reads
// as an empty store that cannot be written.
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
    // False when the file could not be written.
    bool sync();

  private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

}  // namespace relay
