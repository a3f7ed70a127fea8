#include "qv/axes/QVLegacyAxisData.h"

#include "qv/axes/QVDisplayAxis.h"
#include "qv/axes/QVDisplayAxisZoomSettings.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <stdexcept>

namespace qv {

std::vector<double> QVParseRealList(const std::string& AText, const std::string& AWhat)
{
    std::vector<double> Values;
    size_t Pos = 0;
    auto IsSeparator = [](char C) { return C == ' ' || C == ',' || C == ';' || C == '\t' || C == '\n' || C == '\r'; };
    while (Pos < AText.size()) {
        if (IsSeparator(AText[Pos])) {
            ++Pos;
            continue;
        }
        size_t End = Pos;
        while (End < AText.size() && !IsSeparator(AText[End]))
            ++End;
        const std::string Entry = AText.substr(Pos, End - Pos);
        char* Stop = nullptr;
        errno = 0;
        const double Value = std::strtod(Entry.c_str(), &Stop);
        if (Stop != Entry.c_str() + Entry.size() || errno == ERANGE || std::isnan(Value))
            throw std::invalid_argument(AWhat + ": \"" + Entry + "\" is not a number");
        Values.push_back(Value);
        Pos = End;
    }
    return Values;
}

size_t QVReadAxisRanges(TQVDisplayAxis& AAxis, const std::vector<double>& AValues, size_t AFirst)
{
    TQVDisplayOptionalValue* const Bounds[] = {
        AAxis.GetMin()->GetRange()->GetLow(),     AAxis.GetMin()->GetRange()->GetHigh(),
        AAxis.GetMax()->GetRange()->GetLow(),     AAxis.GetMax()->GetRange()->GetHigh(),
        AAxis.GetZooming()->GetRange()->GetLow(), AAxis.GetZooming()->GetRange()->GetHigh()};
    size_t Read = 0;
    for (TQVDisplayOptionalValue* Bound : Bounds) {
        if (AFirst + Read >= AValues.size())
            break;
        Bound->SetValue(AValues[AFirst + Read]);
        ++Read;
    }
    return Read;
}

} // namespace qv
