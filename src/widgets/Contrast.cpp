// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/Contrast.h"

#include <algorithm>
#include <cmath>

namespace relay {

namespace {
double linear(double channel) {
    return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

QColor mixed(const QColor& one, const QColor& other, double part) {
    const auto channel = [part](int from, int to) { return qRound(from + (to - from) * part); };
    return {channel(one.red(), other.red()), channel(one.green(), other.green()),
            channel(one.blue(), other.blue())};
}
}  // namespace

double contrast(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor over(const QColor& colour, const QColor& ground) {
    return mixed(ground, colour, colour.alphaF());
}

QColor contrasting(const QColor& colour, const QColor& end, std::initializer_list<QColor> grounds,
                   double wanted) {
    constexpr int kSteps = 20;
    for (int step = 0; step < kSteps; ++step) {
        const QColor candidate = mixed(colour, end, static_cast<double>(step) / kSteps);
        if (std::all_of(grounds.begin(), grounds.end(),
                        [&](const QColor& ground) { return contrast(candidate, ground) >= wanted; }))
            return candidate;
    }
    return end;
}

}  // namespace relay
