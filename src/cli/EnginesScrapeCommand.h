// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

#include <string>

namespace relay {

// The page of a file, or of an address that begins with http:// or https://. Shows what is wrong with a page
// from the web; throws Failure when there is none.
class PageArgument final {
  public:
    PageArgument(CommandLineContext& context, std::string name)
        : m_context(context), m_name(std::move(name)) {}

    // False when Ctrl-C has cancelled the request.
    bool read();
    const std::string& html() const noexcept { return m_html; }
    bool isWhole() const noexcept { return m_whole; }

  private:
    CommandLineContext& m_context;
    const std::string m_name;
    std::string m_html;
    bool m_whole = true;
};

// engines scrape FILE-or-URL [--source]
class EnginesScrapeCommand final : public Command {
  public:
    EnginesScrapeCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    void showSource(const std::string& source);
    void showForm(const std::string& source);

    std::string m_page;
    bool m_source = false;
};

}  // namespace relay
