// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>

#include <initializer_list>

namespace relay {

// What a line or a shape must have beside its surroundings to be seen, and what a text must have.
inline constexpr double kShapeContrast = 3.0;
inline constexpr double kTextContrast = 4.5;

// The contrast of two opaque colours, 1 to 21, as web content guidelines measure it.
double contrast(const QColor& one, const QColor& other);
// The colour, drawn over the ground where it is translucent.
QColor over(const QColor& colour, const QColor& ground);
// The colour, moved towards `end` as far as it takes to have `wanted` contrast with every ground; `end` where
// nothing in between has it.
QColor contrasting(const QColor& colour, const QColor& end, std::initializer_list<QColor> grounds,
                   double wanted = kShapeContrast);

}  // namespace relay
