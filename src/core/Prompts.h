// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace relay {

enum class Icon { None, Information, Question, Critical };

struct FileChoice final {
    std::string path;     // empty: cancelled
    int filterIndex = 1;  // 1-based place of the chosen filter
};

// The one door to the user. Logic calls it when the user must be told or asked; it knows no toolkit.
// Texts are bytes as in the rest of the program, line breaks inside them CR LF.
class Prompts {
  public:
    virtual ~Prompts() = default;

    virtual void message(std::string_view text, std::string_view title, Icon icon = Icon::None) = 0;
    // Yes gives true.
    virtual bool ask(std::string_view text, std::string_view title) = 0;
    // nullopt: cancelled. An empty answer counts as a cancel wherever the caller does not tell them apart.
    virtual std::optional<std::string> input(std::string_view text, std::string_view title,
                                             std::string_view preset = {}) = 0;
    // `filter` is "Name|*.a;*.b|Name|*.c"; `folder` is where the dialog opens (empty: where it was last).
    virtual FileChoice openFile(std::string_view filter, std::string_view folder) = 0;
    virtual FileChoice saveFile(std::string_view filter, std::string_view folder, std::string_view name) = 0;
    // Hands a file or a web address to the system's handler; false when there is none.
    virtual bool openWithSystem(std::string_view target) = 0;
    virtual void beep() = 0;
    virtual void busy(bool on) = 0;
    virtual void status(std::string_view text) = 0;
    // What was just done, shown in the status line for a while. Where there is no such line, nothing.
    virtual void notice(std::string_view) {}
};

// Hands a file or a web address to the system's handler; says so when there is none.
void openOrTell(Prompts& prompts, std::string_view target, std::string_view title);

// The busy pointer for the length of a block.
class BusyPointer final {
  public:
    explicit BusyPointer(Prompts& prompts) : m_prompts(prompts) { m_prompts.busy(true); }
    ~BusyPointer() { m_prompts.busy(false); }
    BusyPointer(const BusyPointer&) = delete;
    BusyPointer& operator=(const BusyPointer&) = delete;

  private:
    Prompts& m_prompts;
};

// Save and open in the program's own terms: the chosen path, or empty; `filterIndex` gets the chosen filter.
std::string ShowFileDialog(Prompts& prompts, bool save, std::string_view filter, std::string_view folder,
                           std::string_view file, int& filterIndex);

// What is asked where a file is to be saved.
struct SaveQuestion final {
    std::string_view filter;
    std::string_view beforeName;  // "The file ": the question whether an existing file may be replaced ...
    std::string_view behindName;  // ... with the file's name in its middle
    std::string_view title;
};
// The path to save to, or empty when the user steps back. The extension of the chosen filter ("*.kws") is
// added to a name that does not end in it.
std::string askWhereToSave(Prompts& prompts, const SaveQuestion& question, std::string_view folder = {});

}  // namespace relay
