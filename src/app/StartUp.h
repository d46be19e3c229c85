// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace relay {

class clsMain;
struct Services;

// What the start needs from the screens. An empty function does nothing.
struct StartUpScreens final {
    // Closes the splash and restores the pointer; called more than once.
    std::function<void()> closeSplash;
    // Shows the settings dialog until the user closes it.
    std::function<void()> showPreference;
    // Shows the update window with this prompt until the user closes it.
    std::function<void(std::string_view prompt)> showUpdateEngines;
};

// The steps of the program's start that need no window, in their order, and the steps of its end.
class StartUp final {
  public:
    StartUp(const Services& services, clsMain& main, StartUpScreens screens);

    // False when a step failed. A failed step is shown and logged, and the others still run.
    bool run();
    // Asks the user; false keeps the window open.
    bool confirmExit();
    // Closes the files and saves the settings and the window's position.
    void finish(std::string_view mainFormPos);

  private:
    bool attempt(const std::function<void()>& step);
    bool makeFolders();
    void loadCountries();
    void loadCategories();
    void firstRunSettings();
    void checkEngineData();
    void loadEngines();
    void loadProjects();
    void selectFirst();
    void showUnless(bool succeeded, std::string_view words, std::string_view title);
    void closeSplash();

    const Services& m_services;
    clsMain& m_main;
    StartUpScreens m_screens;
    std::string_view m_step;
};

// The main window's position and size, in pixels.
struct WindowPosition final {
    double left = 0;
    double top = 0;
    double width = 0;
    double height = 0;
};
// Reads "left,top,width,height": a negative left or top becomes 0, the size is not checked; nullopt unless
// there are exactly four fields.
std::optional<WindowPosition> parseWindowPosition(std::string_view text);
std::string windowPositionText(const WindowPosition& position);

}  // namespace relay
