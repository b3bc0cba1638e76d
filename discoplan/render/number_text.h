// SPDX-License-Identifier: MIT
#pragma once

/// How numbers become texts.
///
/// A value is taken as its 7 significant decimal digits, the exact binary value rounded half away
/// from zero, and that decimal is rounded again, half away from zero, to the decimals of a picture
/// such as "0.0###". In a picture "0" is a digit that always appears and "#" one that appears when
/// it is significant; "E+#0" normalises to one digit before the point and always signs the
/// exponent. A negative value that rounds to zero keeps its sign.

#include <string>
#include <string_view>

#include "discoplan/export.h"

namespace discoplan {

/// The value in a picture: zeros, a point, zeros and "#", and for the exponent form "E+#0" or
/// "E+0" behind. What is not finite becomes "NaN", "Infinity" or "-Infinity".
DISCOPLAN_EXPORT std::string FormatPicture(float value, std::string_view picture);

/// The first picture, of the given one and those with more zeros at its end, in which the value
/// isn't zero; the exponent form "0.00E+0" for values too large or too small for that. Zero gives
/// the picture itself.
DISCOPLAN_EXPORT std::string FormatToDigits(float value, std::string picture);

/// The same without the exponent form.
DISCOPLAN_EXPORT std::string FormatTrimmed(float value, std::string picture);

/// A value as it stands in a legend and at a site: more decimals for smaller ones, the exponent
/// form for what is above 100000 or below 0.0000001.
DISCOPLAN_EXPORT std::string FormatLegendValue(float value);

/// The shortest form with at most 7 significant digits: what a number joined to a text reads.
DISCOPLAN_EXPORT std::string PlainNumber(float value);

}  // namespace discoplan
