// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>

#include <initializer_list>

namespace relay {

// The least contrast of a line or a shape with its surroundings, and of a text.
inline constexpr double kShapeContrast = 3.0;
inline constexpr double kTextContrast = 4.5;

// The contrast of two opaque colours, 1 to 21, as the web content accessibility guidelines define it.
double contrast(const QColor& one, const QColor& other);
// A translucent colour, drawn over the ground.
QColor over(const QColor& colour, const QColor& ground);
// The colour, mixed with as much of `end` as it needs for the `wanted` contrast with every ground; `end` if
// no mixture has it.
QColor contrasting(const QColor& colour, const QColor& end, std::initializer_list<QColor> grounds,
                   double wanted = kShapeContrast);

}  // namespace relay
