// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace relay {

class CommandLineContext;
class frmHTTP;

// Runs the event loop until the fetcher has nothing to do; its consumers are called meanwhile. Returns false
// when Ctrl-C has cancelled the request.
bool waitForPage(CommandLineContext& context, frmHTTP& fetcher);

}  // namespace relay
