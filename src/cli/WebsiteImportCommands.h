// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"
#include "projects/Sitemap.h"

#include <QDate>

#include <string>
#include <vector>

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

// website import-sitemap FILE SITEMAP-or-URL [--since DATE]
class WebsiteImportSitemapCommand final : public Command {
  public:
    WebsiteImportSitemapCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    SitemapChange merge(const std::vector<SitemapEntry>& entries);
    void show(const SitemapChange& change);

    std::string m_file;
    std::string m_sitemap;
    std::string m_since;
    QDate m_day;
};

}  // namespace relay
