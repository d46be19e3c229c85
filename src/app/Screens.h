// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Commands.h"
#include "submission/LedgerReader.h"

#include <string_view>

class QWidget;

namespace relay {

// Opens the screen of a command, "frmRanking" for instance, over the main window. The target outlives the
// window. Does nothing for a name that no screen has.
void showScreen(std::string_view name, const CommandTarget& target, QWidget* parent);

// Closes the screens that stay open beside the main window.
void closeScreens(const QWidget& parent);

// Opens the wizard of submissions to continue an interrupted run.
void continueSubmission(CutOffRun run, const CommandTarget& target, QWidget* parent);

}  // namespace relay
