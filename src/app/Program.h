// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Clock.h"
#include "core/Log.h"
#include "core/Paths.h"
#include "core/SettingsStore.h"
#include "core/clsPreference.h"
#include "projects/StartUp.h"
#include "projects/clsMain.h"
#include "projects/frmMain.h"

#include <QString>

#include <memory>
#include <string>

namespace relay {

class Prompts;
class frmSplash;

// The window program on one home, put together: log, settings, logic, main window, and the order in which
// they come up and go down.
class Program final {
  public:
    // `commandLine` is the whole of it without the program's name.
    Program(Paths paths, const std::string& commandLine, const Clock& clock, Prompts& prompts);
    ~Program();

    // Shows the splash, reads the settings, runs the start and shows the window. Throws Failure when there is
    // nothing to go on with.
    void start();

    frmMain& window() noexcept { return *m_window; }
    clsMain& main() noexcept { return m_main; }
    Log& log() noexcept { return m_log; }
    clsPreference& preference() noexcept { return m_preference; }
    void bringToFront();
    // Takes the splash away and gives the usual pointer back; harmless when that is done already.
    void closeSplash();
    // In the window's status bar, once there is one.
    void showStatus(const QString& text);

  private:
    StartUpScreens startUpScreens();
    void prepare();
    void placeWindow();
    bool leave();

    const Paths m_paths;
    Prompts& m_prompts;
    Log m_log;
    SettingsStore m_settings;
    clsPreference m_preference;
    clsMain m_main;
    StartUp m_startUp;
    std::unique_ptr<frmSplash> m_splash;
    std::unique_ptr<frmMain> m_window;
    bool m_busy = false;
};

}  // namespace relay
