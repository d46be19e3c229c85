// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Program.h"

#include "app/frmPreference.h"
#include "app/frmSplash.h"
#include "catalogue/frmUpdateEngines.h"
#include "core/Prompts.h"
#include "core/ScreenText.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "session/InstalledData.h"
#include "widgets/Appearance.h"
#include "widgets/Forms.h"

#include <QApplication>
#include <QScreen>

#include <algorithm>

namespace relay {

namespace {
constexpr std::string_view kWindowSection = "Window";
constexpr std::string_view kSplitterKey = "Splitter";
constexpr std::string_view kHealthKey = "EngineHealth";  // "1": its columns are shown

// Larger numbers overflow the windowing system's coordinates.
int pixels(double saved) {
    constexpr double kFarthest = 16383;
    return qRound(std::clamp(saved, 0.0, kFarthest));
}

// True if enough of the window's upper edge is on a screen to drag it.
bool isReachable(const QWidget& window) {
    constexpr QSize kHandle(80, 24);
    const QRect edge(window.pos(), QSize(window.width(), kHandle.height()));
    const QList<QScreen*> screens = QGuiApplication::screens();
    return std::any_of(screens.begin(), screens.end(), [&](const QScreen* screen) {
        const QRect seen = screen->availableGeometry().intersected(edge);
        return seen.width() >= kHandle.width() && seen.height() >= kHandle.height() / 2;
    });
}

Paths withInstalledData(Paths paths) {
    paths.installedData =
        installedDataFolder(fromScreen(QCoreApplication::applicationDirPath()), environmentVariable);
    paths.installedGuide = installedGuideFolder(paths.installedData);
    return paths;
}
}  // namespace

Program::Program(Paths paths, const std::string& commandLine, const Clock& clock, Prompts& prompts)
    : m_prompts(prompts),
      m_session(withInstalledData(std::move(paths)), clock, commandLine, prompts),
      m_main(m_session.services, m_session.catalogue),
      m_startUp(m_session.services, m_main, startUpScreens()) {
    m_main.linksEngines = containsNoCase(commandLine, "/U");
}

Program::~Program() = default;

StartUpScreens Program::startUpScreens() {
    StartUpScreens screens;
    screens.closeSplash = [this] { closeSplash(); };
    screens.showPreference = [this] {
        frmPreference(m_session.services, frmPreference::Shown::AtTheFirstStart).exec();
    };
    screens.showUpdateEngines = [this](std::string_view prompt) {
        frmUpdateEngines(m_main.update, m_prompts, prompt).exec();
    };
    return screens;
}

void Program::closeSplash() {
    if (m_splash) m_splash->close();
    if (std::exchange(m_busy, false)) m_prompts.busy(false);
}

// Continues with a home that cannot be prepared: it may still be readable.
void Program::prepare() {
    const auto failure = failureOf([this] { prepareHome(m_session.paths, m_session.paths.installedData); });
    if (!failure) return;
    log().WriteErrorLog(*failure);
    closeSplash();
    m_prompts.message(*failure, kApplication, Icon::Critical);
}

void Program::start() {
    // Needed by the splash; the other settings are read while it is shown.
    chooseColours(toScreen(m_session.settings.value(kApplication, kWindowSection, "Colours")));
    m_splash = std::make_unique<frmSplash>();
    QObject::connect(m_splash.get(), &frmSplash::timeIsUp, m_splash.get(), [this] { closeSplash(); });
    m_splash->show();
    QCoreApplication::processEvents();
    m_busy = true;
    m_prompts.busy(true);
    prepare();
    m_session.readSettings();
    m_session.catalogue.beforeFailure = [this] { closeSplash(); };

    m_window = std::make_unique<frmMain>(m_session.services, m_main);
    m_window->closeAllowed = [this] { return leave(); };
    placeWindow();
    m_startUp.run();
    closeSplash();
    m_window->showCatalogue();
    if (m_session.settings.value(kApplication, kWindowSection, kHealthKey) == "1") m_window->showHealth(true);
    m_window->show();
    // The saved position is used unless the window would be out of reach.
    if (!m_window->isMaximized() && !isReachable(*m_window)) CenterForm(*m_window);
    QTimer::singleShot(0, m_window.get(), &frmMain::offerCutOffRun);
}

void Program::placeWindow() {
    const std::string saved = m_session.settings.value(kApplication, "Preference", "MainFormPos");
    const std::optional<WindowPosition> place = parseWindowPosition(saved);
    if (place && !m_window->isMaximized() && !m_window->isMinimized()) {
        m_window->move(pixels(place->left), pixels(place->top));
        m_window->resize(pixels(place->width), pixels(place->height));
    }
    m_window->setSplitterPlace(
        leadingInteger(m_session.settings.value(kApplication, kWindowSection, kSplitterKey)));
}

bool Program::leave() {
    if (!m_startUp.confirmExit()) return false;
    const QRectF place = m_window->normalPlace();
    trap(m_prompts, "Save_Setting_Error: ", [&] {
        m_session.settings.setValue(kApplication, kWindowSection, kSplitterKey,
                                    std::to_string(m_window->splitterPlace()));
        m_session.settings.setValue(kApplication, kWindowSection, kHealthKey,
                                    m_main.catalogue.showsEngineHealth() ? "1" : "0");
        m_startUp.finish(windowPositionText({place.x(), place.y(), place.width(), place.height()}));
    });
    return true;
}

void Program::showStatus(const QString& text, int milliseconds) {
    if (m_window) m_window->showStatus(text, milliseconds);
}

void Program::bringToFront() {
    // During the start there may be only a dialog; the window must not appear before its time.
    if (m_window && m_window->isVisible()) {
        if (m_window->isMinimized()) m_window->showNormal();
        m_window->raise();
        m_window->activateWindow();
        QApplication::alert(m_window.get());
    }
    if (QWidget* const dialog = QApplication::activeModalWidget(); dialog != nullptr) {
        dialog->raise();
        dialog->activateWindow();
    }
}

}  // namespace relay
