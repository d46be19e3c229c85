// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/IniFile.h"
#include "ranking/RankEngine.h"

#include <string>
#include <string_view>
#include <vector>

namespace relay {

struct Paths;
struct Services;

// Shown by every reader of the ranking catalogue when the file is missing.
extern const std::string_view kMissingRankingDataNotice;

std::string rankingCatalogueFile(const Paths& paths);

// Who reads the catalogue: decides what is read of each engine, and under which title failures are shown.
enum class RankReader { Ranking, Search };

// The search engines of the ranking catalogue, WindowsPath/kwreng.dat.
class RankingCatalogue final {
  public:
    RankingCatalogue(const Services& services, RankReader reader) : m_services(services), m_reader(reader) {}

    // Reads the engines anew. Shows a message and returns false when the file is missing (what was loaded
    // stays) or cannot be read to its end (what was read so far stays; goes to the log too).
    bool loadEngineData();

    const std::vector<RankEngine>& engines() const noexcept { return m_engines; }
    std::size_t NumOfEngines() const noexcept { return m_engines.size(); }
    // The first engine of that name, without regard to case; npos when there is none.
    std::size_t indexOf(std::string_view name) const noexcept;

  private:
    const Services& m_services;
    RankReader m_reader;
    std::vector<RankEngine> m_engines;
};

// What the keyword builder reads of the same file.
class KeywordCatalogue final {
  public:
    explicit KeywordCatalogue(const Services& services) : m_services(services) {}

    // The engines to choose from. Failures as above.
    bool loadEngine();
    // The chosen engine and NumOfURLs.
    bool loadEngineData(std::string_view name);

    const KeywordEngines& offered() const noexcept { return m_offered; }
    const KeywordEngine& engine() const noexcept { return m_engine; }
    std::int16_t NumOfURLs() const noexcept { return m_NumOfURLs; }

  private:
    const Services& m_services;
    KeywordEngines m_offered;
    KeywordEngine m_engine;
    std::int16_t m_NumOfURLs = 0;
};

}  // namespace relay
