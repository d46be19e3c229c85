// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace relay {

enum class Icon { None, Information, Question, Critical };

struct FileChoice final {
    std::string path;     // empty when cancelled
    int filterIndex = 1;  // number of the chosen filter, from 1
};

// The only way to the user: messages, questions, file dialogs. Independent of any toolkit. Texts are bytes as
// in the rest of the program; their line breaks are CR LF.
class Prompts {
  public:
    virtual ~Prompts() = default;

    virtual void message(std::string_view text, std::string_view title, Icon icon = Icon::None) = 0;
    // True for Yes.
    virtual bool ask(std::string_view text, std::string_view title) = 0;
    // nullopt when cancelled. An empty answer counts as a cancel unless the caller distinguishes them.
    virtual std::optional<std::string> input(std::string_view text, std::string_view title,
                                             std::string_view preset = {}) = 0;
    // `filter` is "Name|*.a;*.b|Name|*.c"; `folder` is where the dialog opens (empty: the last one used).
    virtual FileChoice openFile(std::string_view filter, std::string_view folder) = 0;
    // An empty title stands for the usual one.
    virtual FileChoice saveFile(std::string_view filter, std::string_view folder, std::string_view name,
                                std::string_view title = {}) = 0;
    // An existing folder; nullopt when cancelled, or where folders cannot be chosen.
    virtual std::optional<std::string> chooseFolder(std::string_view /*title*/, std::string_view /*folder*/) {
        return std::nullopt;
    }
    // Hands a file or a web address to the system's handler; false when there is none. A handler that fails
    // later is reported by the prompts themselves.
    virtual bool openWithSystem(std::string_view target) = 0;
    // Opens a local file in the system's program for text, whatever its type; false when there is none.
    virtual bool viewText(std::string_view file) = 0;
    // Starts a program, in its own folder and without a shell; false when it cannot be started.
    virtual bool startProgram(std::string_view file) = 0;
    virtual void beep() = 0;
    virtual void busy(bool on) = 0;
    virtual void status(std::string_view text) = 0;
    // Shows for a while, in the status line, what was just done; does nothing where there is no such line.
    virtual void notice(std::string_view) {}
};

// The message for a file or a web address that the system cannot open.
std::string cannotOpenText(std::string_view target);
// Opens a file or a web address with the system's handler; shows a message when there is none.
void openOrTell(Prompts& prompts, std::string_view target, std::string_view title);
// The same for an address from a settings file: shows a message for anything but a web address.
void openPageOrTell(Prompts& prompts, std::string_view address, std::string_view title);

// Shows the busy pointer for the duration of a block.
class BusyPointer final {
  public:
    explicit BusyPointer(Prompts& prompts) : m_prompts(prompts) { m_prompts.busy(true); }
    ~BusyPointer() { m_prompts.busy(false); }
    BusyPointer(const BusyPointer&) = delete;
    BusyPointer& operator=(const BusyPointer&) = delete;

  private:
    Prompts& m_prompts;
};

// The chosen path, or empty; `filterIndex` receives the chosen filter.
std::string ShowFileDialog(Prompts& prompts, bool save, std::string_view filter, std::string_view folder,
                           std::string_view file, int& filterIndex, std::string_view title = {});

// The texts of a save dialog.
struct SaveQuestion final {
    std::string_view filter;
    std::string_view beforeName;  // "The file ": the question before an existing file is replaced ...
    std::string_view behindName;  // ... is beforeName, the file's name, behindName
    std::string_view title;
};
// The path to save to, or empty when the user cancels. Appends the extension of the chosen filter ("*.kws")
// to a name without it.
std::string askWhereToSave(Prompts& prompts, const SaveQuestion& question, std::string_view folder = {});

}  // namespace relay
