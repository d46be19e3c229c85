// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <CLI/App.hpp>
#include <functional>
#include <string>
#include <vector>

namespace relay {

class CommandLineContext;
class Catalogue;

// The options that choose engines. They are applied in the order given.
class SelectionOptions final {
  public:
    void addTo(CLI::App& app);

    // True if any option chooses engines (saving a selection does not).
    bool chooses() const noexcept { return !m_steps.empty(); }
    bool isGiven() const noexcept { return chooses() || !m_saveTo.empty(); }
    // Applies the options to the catalogue's selection. Throws Failure if an engine or a file does not exist,
    // or a file of engines cannot be read to its end.
    void apply(CommandLineContext& context, Catalogue& catalogue) const;

  private:
    using Step = std::function<void(Catalogue&)>;

    void addFlag(CLI::App& app, const std::string& name, const std::string& about, Step step);
    void addValue(CLI::App& app, const std::string& name, const std::string& value, const std::string& about,
                  std::function<Step(const std::string&)> makeStep);

    std::vector<Step> m_steps;
    std::string m_saveTo;
};

}  // namespace relay
