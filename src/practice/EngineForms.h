// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "practice/PracticeRequest.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace relay {

// The form of one practice engine, made from its record so that the page asks for what the record sends.
struct EngineForm final {
    std::string name;
    std::string method = "POST";
    std::string target;      // path of the form's action
    NamedValues fields;      // field name and its template: a macro in angle brackets, or a constant
    NamedValues categories;  // labels and values of the engine's own table
};

// The forms by the word after "/engines/" in the records' actions.
class EngineForms final {
  public:
    // `engines` is the text of a krveng5.dat, `categories` that of its catkws.dat. Records without
    // "/engines/" in their action are skipped.
    void read(std::string_view engines, std::string_view categories);
    // A general form with the usual fields if no record has the word.
    EngineForm form(std::string_view slug) const;

  private:
    std::unordered_map<std::string, EngineForm> m_forms;
};

}  // namespace relay
