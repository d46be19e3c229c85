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

// The digests of the loaded catalogue. A large one takes a while, so they are made in a thread of their own
// while the run is prepared, and kept until another catalogue is loaded.
class CatalogueDigests final {
  public:
    void begin(const EngineCollection& engines);
    // By the file's name. Waits for them.
    std::map<std::string, std::string> of(const EngineCollection& engines);

  private:
    std::shared_ptr<const EngineTexts> m_texts;
    std::shared_future<std::map<std::string, std::string>> m_digests;
};

// What the requests of a run are made of, as SHA-256 in hex digits. A run goes on only where it is the same.
struct RunDigests final {
    std::map<std::string, std::string> catalogue;  // by the file's name
    std::string settings;                          // as they are kept; a run may use others
    std::map<std::string, std::string> websites;   // by the file's path: its fields and URLs, not its reports

    // Of the plan's website files as they stand, beside the catalogue's. A file that cannot be read has an
    // empty digest.
    static RunDigests of(const Services& services, std::map<std::string, std::string> catalogue,
                         const RunPlan& plan);
    // Of the settings as they would be kept by one who answered the question about link pages so.
    static std::string ofSettings(bool blockSpam);
};

// What has changed since the digests `then` were made, a phrase each ("the engine file krveng5.dat", "the
// setting BlockSpam", "the website file /home/ada/shop.kws"); empty: nothing. `blockSpam` is what the run
// used.
std::vector<std::string> changedSince(const RunDigests& then, bool blockSpam, const RunDigests& now);

}  // namespace relay
