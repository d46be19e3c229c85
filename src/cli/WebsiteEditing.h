// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"

#include <CLI/App.hpp>
#include <functional>
#include <string>

namespace relay {

class CommandLineContext;
struct KeyValue;

// What the commands that change a website file share.

void addFileOption(CLI::App& app, std::string& file, const char* about = "The website file");
// Throws Failure when there is no such website file.
void requireFile(const std::string& file);
// Reads the lists of a website file; a failure names the file.
void readLists(const std::string& path, const std::function<void()>& read);
// Changes the URL list of a website file under one lock, so that two programs lose nothing.
void changeUrls(const std::string& path, const std::function<void(Rows& urls)>& change);

// Warn about the parts of a value, or of a URL, that the file or the engines do not take.
void noteLosses(CommandLineContext& context, const KeyValue& entry);
void noteLongUrl(CommandLineContext& context, const std::string& url);
// "2 URLs added."
void noteAdded(CommandLineContext& context, int urls);

}  // namespace relay
