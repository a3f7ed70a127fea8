// The chart's point label: codes, the default template spliced in, and the ends of the text.

#include "qv/display/QVLabelTemplate.h"

#include <gtest/gtest.h>

namespace {

std::string Format(const std::string& AText, const std::string& ADefault)
{
    int XCalls = 0;
    return qv::QVFormatLabelText(
        AText, ADefault, [&] { return std::string("x").append(std::to_string(++XCalls)); }, [] { return std::string("y"); });
}

TEST(LabelTemplate, CodesExpandCaseBlindAndUnknownCodesVanish)
{
    EXPECT_EQ(Format("", "%X : %Y"), "x1 : y");
    EXPECT_EQ(Format("t=%x v=%y", "unused"), "t=x1 v=y");
    EXPECT_EQ(Format("100%% %Q!", ""), "100% !");
    // Each code asks its axis anew.
    EXPECT_EQ(Format("%X %X", ""), "x1 x2");
}

TEST(LabelTemplate, DefaultSplicesInAndIsExpandedInPlace)
{
    EXPECT_EQ(Format("[%D] ok", "%X : %Y"), "[x1 : y] ok");
    // The default standing for itself expands "%D" to nothing instead of without end.
    EXPECT_EQ(Format("", "a%Db"), "ab");
    EXPECT_EQ(Format("<%D>", "a%Db"), "<ab>");
}

TEST(LabelTemplate, PercentAtTheEndEndsTheText)
{
    EXPECT_EQ(Format("value %Y%", ""), "value y");
    EXPECT_EQ(Format("%", "x"), "");
    EXPECT_EQ(Format("", ""), "");
}

} // namespace
