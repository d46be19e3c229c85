// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace relay {

class Clock;
class HttpNetwork;
class Log;
class Prompts;
class SettingsStore;
class clsPreference;
struct Paths;

// What an operation needs from the program, passed on by reference. Everything in it lives as long as the
// program.
struct Services final {
    const Paths& paths;
    SettingsStore& settings;
    clsPreference& preference;
    Log& log;
    Prompts& prompts;
    const Clock& clock;
    HttpNetwork& network;
};

}  // namespace relay
