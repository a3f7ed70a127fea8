// The image list: size checks, copies on Add, strips cut into glyphs, and drawing by index.
#include "support/RecordingCanvas.h"

#include "qv/foundation/QLImageList.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

using namespace qv;

namespace {

template <class E, class F>
void ExpectErrorNaming(F AFunction, std::initializer_list<const char*> ATexts)
{
    try {
        AFunction();
        ADD_FAILURE() << "no error raised";
    } catch (const E& Error) {
        for (const char* Text : ATexts)
            EXPECT_NE(std::string(Error.what()).find(Text), std::string::npos) << Error.what();
    }
}

TQLBitmap Filled(int32_t AWidth, int32_t AHeight, uint32_t AColor)
{
    TQLBitmap B(AWidth, AHeight);
    B.Fill(AColor);
    return B;
}

} // namespace

TEST(ImageList, AddChecksTheSizeKeepsACopyAndDrawsByIndex)
{
    TQLImageList List(16, 16);
    ExpectErrorNaming<std::invalid_argument>([&] { List.Add(TQLBitmap(3, 4)); }, {"3 x 4", "16 x 16"});
    ExpectErrorNaming<std::invalid_argument>([] { TQLImageList Bad(-1, 4); }, {"-1 x 4"});
    EXPECT_EQ(List.GetCount(), 0);

    TQLBitmap Image = Filled(16, 16, 0xFF0000FF);
    EXPECT_EQ(List.Add(Image), 0);
    EXPECT_EQ(List.Add(Filled(16, 16, 0xFFFF0000)), 1);
    Image.Fill(0);
    EXPECT_EQ(List.GetImage(0).GetPixel(5, 5), 0xFF0000FFu);

    TQLRecordingCanvas Canvas;
    List.Draw(Canvas, 12, 34, 1);
    const auto Calls = Canvas.Of("DrawBitmap");
    ASSERT_EQ(Calls.size(), 1u);
    EXPECT_EQ(Calls[0].Args, (std::vector<int32_t>{12, 34, 16, 16}));
    EXPECT_EQ(Calls[0].Bitmap, &List.GetImage(1));

    Canvas.ClearRecords();
    ExpectErrorNaming<std::out_of_range>([&] { List.Draw(Canvas, 0, 0, 2); }, {"2"});
    ExpectErrorNaming<std::out_of_range>([&] { List.Draw(Canvas, 0, 0, -3); }, {"-3"});
    ExpectErrorNaming<std::out_of_range>([&] { List.GetImage(7); }, {"7"});
    EXPECT_TRUE(Canvas.GetRecords().empty());
}

TEST(ImageList, StripIsCutLeftToRight)
{
    TQLImageList List(2, 2);
    List.Add(TQLBitmap(2, 2));
    TQLBitmap Strip(6, 2);
    for (int32_t X = 0; X < 6; ++X)
        for (int32_t Y = 0; Y < 2; ++Y)
            Strip.SetPixel(X, Y, 0xFF000000u | static_cast<uint32_t>(X * 16 + Y));
    EXPECT_EQ(List.AddStrip(Strip), 1);
    ASSERT_EQ(List.GetCount(), 4);
    EXPECT_EQ(List.GetImage(1).GetPixel(0, 0), 0xFF000000u);
    EXPECT_EQ(List.GetImage(2).GetPixel(1, 1), 0xFF000000u | (3 * 16 + 1));
    EXPECT_EQ(List.GetImage(3).GetPixel(0, 1), 0xFF000000u | (4 * 16 + 1));

    ExpectErrorNaming<std::invalid_argument>([&] { List.AddStrip(TQLBitmap(5, 2)); }, {"5 x 2"});
    ExpectErrorNaming<std::invalid_argument>([&] { List.AddStrip(TQLBitmap(4, 3)); }, {"4 x 3"});
    EXPECT_EQ(List.GetCount(), 4);
}
