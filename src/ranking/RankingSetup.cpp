// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/RankingSetup.h"

#include "core/Text.h"

namespace relay {

std::int16_t RankingSetup::number() const {
    return toInt16(leadingNumber(pageLinks));
}

std::int16_t RankingSetup::pagesOfRun() const {
    return limit == RankLimit::Pages ? number() : toInt16(leadingNumber(left(pageLinks, 1)));
}

}  // namespace relay
