// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/EngineBuilder.h"
#include "practice/PracticeWeb.h"

#include <functional>
#include <memory>
#include <string>

namespace relay {

class Catalogue;
class frmHTTP;
struct Services;

// The Engine Builder's "Try it": sends one real request of an engine that is not in the catalogue yet to a
// practice web of this program, and tells what arrived there.
class EngineTrial final {
  public:
    // Everything must outlive the trial. `done` gets the result of each start() that was not refused.
    EngineTrial(const Services& services, const Catalogue& catalogue, frmHTTP& fetcher,
                std::function<void(const TrialResult& result)> done);
    ~EngineTrial();  // a running request ends without a result
    EngineTrial(const EngineTrial&) = delete;
    EngineTrial& operator=(const EngineTrial&) = delete;

    // With the details of this website; without a file, or where it has no URL, with an example's. False,
    // with nothing done, while the fetcher is in use.
    bool start(const CustomEngineRecord& record, const std::string& websiteFile);

  private:
    void send(const CustomEngineRecord& record, const std::string& websiteFile);
    void finish(const std::string& problem);

    const Services& m_services;
    const Catalogue& m_catalogue;
    frmHTTP& m_fetcher;
    std::function<void(const TrialResult& result)> m_done;
    std::unique_ptr<PracticeWeb> m_web;
};

}  // namespace relay
