// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"

#include <QDialog>

#include <memory>
#include <string>
#include <vector>

namespace relay {

namespace Ui {
class frmPreview;
}
class Catalogue;
struct Services;

// Shows what would be sent to an engine for a website's URL. Nothing is sent.
class frmPreview final : public QDialog {
    Q_OBJECT
  public:
    struct Website final {
        std::string name;  // as it is listed
        std::string file;
    };

    // Offers the engines of the catalogue and these websites. `services` and `catalogue` outlive the form.
    frmPreview(const Services& services, const Catalogue& catalogue, std::vector<Website> websites,
               QWidget* parent = nullptr);
    ~frmPreview() override;

    void chooseEngine(std::string_view name);
    void chooseWebsite(std::string_view file);

  private:
    void showURLs();
    void showPreview();

    std::unique_ptr<Ui::frmPreview> m_ui;
    const Services& m_services;
    const Catalogue& m_catalogue;
    std::vector<Website> m_websites;
    Rows m_fields;
};

}  // namespace relay
