// SPDX-License-Identifier: GPL-3.0-or-later
#include "practice/PracticeCatalogue.h"

#include "core/Text.h"

namespace relay {

std::string pointAtPracticeWeb(std::string_view catalogue, std::string_view address) {
    return replaceAll(catalogue, "http://@PRACTICE@", address);
}

}  // namespace relay
