// SPDX-License-Identifier: GPL-3.0-or-later
// A submission from the real window, by its buttons: bench_wizard HOME CONNECTIONS submits the websites of
// the home to all engines. On stdout, in a line: the seconds from the click on "Submit" to the last page
// painted, and the longest time, in milliseconds, for which the event loop did not turn: while the wizard
// opened, up to the list of URLs, and while the run went on and its results came up.
#include "app/Program.h"
#include "catalogue/Catalogue.h"
#include "core/clsPreference.h"
#include "submission/frmSubmit.h"
#include "support/ScriptedPrompts.h"
#include "support/TestHome.h"
#include "widgets/Appearance.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QPushButton>

#include <cstdio>

namespace {
using namespace relay;

// Ticks each millisecond; what a tick is late, somebody else kept the event loop.
class Stalls final {
  public:
    Stalls() {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(1);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { note(); });
        m_clock.start();
        m_timer.start();
    }
    // In milliseconds, since the last call.
    double take() {
        note();
        return std::exchange(m_longest, 0);
    }

  private:
    void note() {
        m_longest = std::max(m_longest, static_cast<double>(m_clock.nsecsElapsed()) / 1e6);
        m_clock.restart();
    }

    QTimer m_timer;
    QElapsedTimer m_clock;
    double m_longest = 0;
};

void turnEventLoop(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

void push(QWidget& form, const char* button) {
    form.findChild<QPushButton*>(QString::fromLatin1(button))->click();
}

// Called inside the wizard's own event loop.
void drive(frmSubmit& wizard, Stalls& stalls) {
    turnEventLoop(20);
    const double opening = stalls.take();
    push(wizard, "cmdNext");
    turnEventLoop(20);
    push(wizard, "cmdStart");
    turnEventLoop(20);
    const double listing = stalls.take();
    QElapsedTimer timer;
    QEventLoop running;
    RunSummary summary;
    QObject::connect(&wizard.controller(), &SubmissionController::runDone, &running,
                     [&](const RunSummary& done) {
                         summary = done;
                         running.quit();
                     });
    timer.start();
    push(wizard, "cmdSubmit");
    running.exec();
    QCoreApplication::processEvents();
    wizard.repaint();
    const double seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    turnEventLoop(20);
    std::printf("%.4f %.1f %.1f %.1f %d\n", seconds, opening, listing, stalls.take(), summary.success);
    wizard.reject();
}
}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "bench_wizard: see the head of bench/wizard.cpp\n");
        return 2;
    }
    QApplication application(argc, argv);
    applyAppearance(application, QStringLiteral("light"));
    test::ScriptedPrompts prompts;
    const SystemClock clock;
    Program program(Paths::insideHome(argv[1]), {}, clock, prompts);
    program.start();
    program.preference().Connections = static_cast<std::int16_t>(std::atoi(argv[2]));
    program.main().catalogue.selection.EngineSelect(true);
    turnEventLoop(20);

    Stalls stalls;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        auto* const wizard = qobject_cast<frmSubmit*>(QApplication::activeModalWidget());
        if (wizard == nullptr || !wizard->isVisible()) return;
        poll.stop();
        drive(*wizard, stalls);
    });
    poll.start(1);
    program.window().findChild<QAction*>(QStringLiteral("Submit"))->trigger();
    for (const auto& shown : prompts.shown)
        std::fprintf(stderr, "%s: %s\n", shown.title.c_str(), shown.text.c_str());
    return 0;
}
