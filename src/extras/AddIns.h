// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace relay {

class clsPreference;
struct Services;

// A tool beside this program, which the menu Add-Ins can start.
struct AddIn final {
    std::string_view code;
    std::string_view name;
    std::string_view description;
    std::string clsPreference::*path;  // of its program; empty: not installed
};
// In the order of the menu, of the manager's list and of the lists of codes.
extern const std::array<AddIn, 3> kAddIns;

// The add-ins: which of them the menu shows, and starting them.
class AddIns final : public QObject {
    Q_OBJECT
  public:
    using Flags = std::array<bool, std::tuple_size_v<decltype(kAddIns)>>;

    explicit AddIns(const Services& services) : m_services(services) {}

    // The full path of its program, or empty.
    const std::string& pathOf(std::size_t addIn) const;
    // The codes of the installed tools, such as "KRW,KLB,": the last one has no comma.
    std::string GetAddIns() const;
    // Shows the tools of a list of codes in the menu; none is hidden again.
    void LoadAddIns(std::string_view list);
    const Flags& shown() const noexcept { return m_shown; }
    // "&OK" of the manager: the codes of the ticked tools that are installed. For the others offers the
    // maker's download page.
    std::string confirm(const Flags& ticked);
    // Starts the tool, without a shell: as a program, or by the system's handler if it is none.
    void run(std::size_t addIn);

  Q_SIGNALS:
    void shownChanged();

  private:
    std::string codesOf(const Flags& wanted) const;

    const Services& m_services;
    Flags m_shown{};
};

}  // namespace relay
