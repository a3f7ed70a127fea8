#pragma once
// The numeric text of axis ticks.
//
// A tick text must tell a tick from its neighbours and carry no digit that says nothing. The
// text is therefore rounded to a resolution taken from the width of the scale, not from the
// step: the step is not known here, and a given scale may be walked with any step. The
// resolution lies a few decades below the width's leading digit (at least 3, more when
// APrecision asks for more), so ticks as close as a thousandth of the scale still read apart,
// and trailing zeros are then dropped, so that ticks on round values print as "0.5", "1",
// "1.5" and not "0.500", "1.000", "1.500".
//
// With AFixedPrecision the text keeps exactly APrecision decimals (of the mantissa, in the
// scientific form), zeros included. The scientific form writes the mantissa, "E" and the
// exponent with no plus sign or padding: "2.5E-6", "1E3". Zero is always "0" in the free
// forms, and a value that rounds to zero never reads "-0".
//
// Nothing here raises: a NaN reads "NaN", the infinities "INF" and "-INF"; a scale of no
// width, or an unbounded one, takes the size of the value itself, or 1, as its width.

#include <cstdint>
#include <string>

namespace qv {

// Decimals are never more than this in the fixed forms.
inline constexpr int32_t CQVMaxTickPrecision = 18;

// The text of AValue on a scale from AMin to AMax (either order).
std::string QVGetScaleTickText(double AValue, double AMin, double AMax, bool AFixedPrecision, uint32_t APrecision,
                               bool AScientific);

// The decimals of the plain form for values around AValue on a scale ARange wide: APrecision
// (kept in 0..18) when AFixedPrecision, else as many as the scale's resolution needs, never
// more than a double can carry for AValue.
int32_t QVGetDecimalPoints(double AValue, double ARange, int32_t APrecision, bool AFixedPrecision);

} // namespace qv
