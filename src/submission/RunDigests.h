// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/RunPlan.h"

#include <future>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

class EngineCollection;
struct EngineTexts;
struct Services;

// The digests of the loaded catalogue. A large one takes time, so they are computed in a thread while the run
// is prepared, and kept until another catalogue is loaded.
class CatalogueDigests final {
  public:
    void begin(const EngineCollection& engines);
    // By file name. Waits for the thread.
    std::map<std::string, std::string> of(const EngineCollection& engines);

  private:
    std::shared_ptr<const EngineTexts> m_texts;
    std::shared_future<std::map<std::string, std::string>> m_digests;
};

// SHA-256 digests, in hex digits, of everything that the requests of a run are made of. A run is continued
// only if they are unchanged.
struct RunDigests final {
    std::map<std::string, std::string> catalogue;  // by file name
    std::string settings;                          // as stored; a run may use others
    std::map<std::string, std::string> websites;   // by path: fields and URLs, not reports

    // Adds the digests of the settings and of the plan's website files. A file that cannot be read has an
    // empty digest.
    static RunDigests of(const Services& services, std::map<std::string, std::string> catalogue,
                         const RunPlan& plan);
    // The digest of the settings with this value of BlockSpam.
    static std::string ofSettings(bool blockSpam);
};

// What has changed since the digests `then`, one phrase each ("the engine file krveng5.dat", "the setting
// BlockSpam", "the website file /home/ada/shop.kws"). `blockSpam` is the value that the run used.
std::vector<std::string> changedSince(const RunDigests& then, bool blockSpam, const RunDigests& now);

}  // namespace relay
