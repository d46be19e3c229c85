// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/PageWait.h"

#include "cli/CommandLineContext.h"
#include "cli/StopSignal.h"
#include "transport/frmHTTP.h"

#include <QEventLoop>

namespace relay {

bool waitForPage(CommandLineContext& context, frmHTTP& fetcher) {
    StopSignal& stop = context.console().stop;
    stop.watch();
    QEventLoop loop;
    // Queued, as a consumer may request the next page.
    QObject::connect(
        &fetcher, &frmHTTP::runningChanged, &loop,
        [&] {
            if (!fetcher.isRunning()) loop.quit();
        },
        Qt::QueuedConnection);
    QObject::connect(&stop, &StopSignal::requested, &fetcher, [&fetcher] { fetcher.Disconnect(); });
    if (stop.poll()) fetcher.Disconnect();
    if (fetcher.isRunning()) loop.exec();
    return !stop.poll();
}

}  // namespace relay
