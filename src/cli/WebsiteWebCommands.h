// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

#include <string>
#include <vector>

namespace relay {

struct KeyValue;

// website details FILE [--url URL] [--print]
class WebsiteDetailsCommand final : public Command {
  public:
    WebsiteDetailsCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    std::string firstUrl() const;
    void show(const std::vector<KeyValue>& values);

    std::string m_file;
    std::string m_url;
    bool m_print = false;
};

// website urls-from-web FILE PAGE [--skip TEXT...] [--print]
class WebsiteUrlsFromWebCommand final : public Command {
  public:
    WebsiteUrlsFromWebCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    std::string m_file;
    std::string m_page;
    std::vector<std::string> m_filters;
    bool m_print = false;
};

}  // namespace relay
