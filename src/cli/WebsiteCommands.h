// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

#include <string>
#include <vector>

namespace relay {

struct KeyValue;

// website show FILE
class WebsiteShowCommand final : public Command {
  public:
    WebsiteShowCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    std::string shownValue(const std::string& key, const std::string& value);

    std::string m_file;
    bool m_showPassword = false;
};

// website set FILE [KEY=VALUE...] [--password-file FILE]
class WebsiteSetCommand final : public Command {
  public:
    WebsiteSetCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    std::vector<KeyValue> wantedValues();
    void noteStrangeCategory();

    std::string m_file;
    std::vector<std::string> m_assignments;
    std::string m_passwordFile;
};

// website add-url FILE URL...
class WebsiteAddUrlCommand final : public Command {
  public:
    WebsiteAddUrlCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    std::string m_file;
    std::vector<std::string> m_urls;
};

// website import-urls FILE TEXTFILE
class WebsiteImportUrlsCommand final : public Command {
  public:
    WebsiteImportUrlsCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    std::string m_file;
    std::string m_textFile;
};

// website export-urls FILE TEXTFILE
class WebsiteExportUrlsCommand final : public Command {
  public:
    WebsiteExportUrlsCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    std::string m_file;
    std::string m_textFile;
};

}  // namespace relay
