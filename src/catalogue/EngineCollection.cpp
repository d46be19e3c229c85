// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/EngineCollection.h"

#include <utility>

namespace relay {

namespace {
constexpr std::size_t kUsualRecordBytes = 250;  // estimate for reserving space
}

void EngineCollection::start(std::string file, std::shared_ptr<const std::string> tables) {
    m_store = std::make_shared<Store>();
    m_store->file = std::move(file);
    m_store->tables = std::move(tables);
    m_store->texts = {m_store->file, *m_store->tables};
    m_store->byName.reserve(m_store->file.size() / kUsualRecordBytes);
}

bool EngineCollection::add(const clsEngines& engine) {
    if (!m_store->byName.insert(static_cast<std::uint32_t>(m_store->engines.size()), engine.name(), names()))
        return false;
    m_store->engines.push_back(engine);
    return true;
}

const clsEngines* EngineCollection::find(std::string_view name) const noexcept {
    const std::uint32_t place = m_store->byName.find(name, names());
    return place == KeySet::kNone ? nullptr : &m_store->engines[place];
}

}  // namespace relay
