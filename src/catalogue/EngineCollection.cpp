// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/EngineCollection.h"

#include <utility>

namespace relay {

bool EngineCollection::add(const clsEngines& engine) {
    m_engines.push_back(engine);
    if (m_byName.insert(&m_engines.back())) return true;
    m_engines.pop_back();
    return false;
}

void EngineCollection::keep(std::shared_ptr<const void> storage) {
    m_storage.push_back(std::move(storage));
}

void EngineCollection::clear() {
    m_byName.clear();
    m_engines.clear();
    m_storage.clear();
}

}  // namespace relay
