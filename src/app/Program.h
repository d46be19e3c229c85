// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/StartUp.h"
#include "app/clsMain.h"
#include "app/frmMain.h"
#include "core/Clock.h"
#include "session/Session.h"

#include <QString>

#include <memory>
#include <string>

namespace relay {

class Prompts;
class frmSplash;

// The window program on one home: session, logic, main window, and the order in which they start and stop.
class Program final {
  public:
    // `commandLine` is all of it without the program's name.
    Program(Paths paths, const std::string& commandLine, const Clock& clock, Prompts& prompts);
    ~Program();

    // Shows the splash, reads the settings, runs the start and shows the window. Throws Failure when the
    // program cannot continue.
    void start();

    frmMain& window() noexcept { return *m_window; }
    clsMain& main() noexcept { return m_main; }
    const Services& services() const noexcept { return m_session.services; }
    Log& log() noexcept { return m_session.log; }
    clsPreference& preference() noexcept { return m_session.preference; }
    void bringToFront();
    // Closes the splash and restores the pointer; harmless when already done.
    void closeSplash();
    // Shows the text in the window's status bar, if there is one.
    void showStatus(const QString& text, int milliseconds);

  private:
    StartUpScreens startUpScreens();
    void prepare();
    void placeWindow();
    bool leave();

    Prompts& m_prompts;
    Session m_session;
    clsMain m_main;
    StartUp m_startUp;
    std::unique_ptr<frmSplash> m_splash;
    std::unique_ptr<frmMain> m_window;
    bool m_busy = false;
};

}  // namespace relay
