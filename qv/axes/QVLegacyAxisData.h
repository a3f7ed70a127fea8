#pragma once
// Readers of axis settings that older stored forms kept as flat lists of numbers. The lists
// are read only; nothing writes them any more.

#include <string>
#include <vector>

namespace qv {

class TQVDisplayAxis;

// The numbers of a list written as text, separated by spaces, commas or semicolons.
// Raises std::invalid_argument naming AWhat and the offending text when an entry is not a
// number.
std::vector<double> QVParseRealList(const std::string& AText, const std::string& AWhat);

// The values of Min.Range.Low, Min.Range.High, Max.Range.Low, Max.Range.High,
// Zooming.Range.Low and Zooming.Range.High from AValues[AFirst] on; a shorter list sets what
// it holds. Returns how many were read. The
// enabled flags stay as they are.
size_t QVReadAxisRanges(TQVDisplayAxis& AAxis, const std::vector<double>& AValues, size_t AFirst);

} // namespace qv
