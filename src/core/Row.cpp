// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Row.h"

#include <stdexcept>

namespace relay {

std::string_view RowSubItems::at(std::size_t i) const {
    if (i >= size()) throw std::out_of_range("no such column");
    return (*this)[i];
}

RowView::operator Row() const {
    Row row{std::string(key), std::string(text), {},         std::string(icon),
            std::string(tag), checked,           highlighted};
    for (std::size_t i = 0; i < subItems.size(); ++i) row.subItems.emplace_back(subItems[i]);
    return row;
}

}  // namespace relay
