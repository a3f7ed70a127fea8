#pragma once
// Label templates: text with percent codes. "%%" is a percent sign; "%" and one more
// character (compared case-blind) is a code that the caller expands; a code nobody knows
// expands to nothing, and a "%" at the very end ends the text.

#include <cctype>
#include <string>

namespace qv {

// Expands ATemplate; AExpand(code, result) appends the text of an upper-case code.
template <class F>
std::string QVExpandLabelTemplate(const std::string& ATemplate, F&& AExpand)
{
    std::string Result;
    Result.reserve(ATemplate.size());
    for (size_t I = 0; I < ATemplate.size(); ++I) {
        if (ATemplate[I] != '%') {
            Result += ATemplate[I];
            continue;
        }
        if (++I >= ATemplate.size())
            break;
        const char Code = static_cast<char>(std::toupper(static_cast<unsigned char>(ATemplate[I])));
        if (Code == '%')
            Result += '%';
        else
            AExpand(Code, Result);
    }
    return Result;
}

// The label of a chart point: "%X" and "%Y" are the axes' texts of the point's values, "%D"
// the default template spliced in and expanded. ALabelText is the template, or ADefault when
// it is empty. Inside the default template "%D" expands to nothing, since it would stand for
// itself without end.
template <class FX, class FY>
std::string QVFormatLabelText(const std::string& ALabelText, const std::string& ADefault, FX&& AXText, FY&& AYText)
{
    auto Expand = [&](const std::string& ATemplate, bool AInDefault, auto& ASelf) -> std::string {
        return QVExpandLabelTemplate(ATemplate, [&](char ACode, std::string& AResult) {
            if (ACode == 'X')
                AResult += AXText();
            else if (ACode == 'Y')
                AResult += AYText();
            else if (ACode == 'D' && !AInDefault)
                AResult += ASelf(ADefault, true, ASelf);
        });
    };
    return ALabelText.empty() ? Expand(ADefault, true, Expand) : Expand(ALabelText, false, Expand);
}

} // namespace qv
