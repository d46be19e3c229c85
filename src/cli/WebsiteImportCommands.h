// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

#include <string>

namespace relay {

struct WebsiteFields;

// website import-form FILE DATAFILE
class WebsiteImportFormCommand final : public Command {
  public:
    WebsiteImportFormCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    void selectCategory(WebsiteFields& fields, std::string_view main, std::string_view sub);

    std::string m_file;
    std::string m_dataFile;
};

}  // namespace relay
