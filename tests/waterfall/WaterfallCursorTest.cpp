// Waterfall cursors: each sink connected to an output pin hears a start at rate 1, and after
// each paint the X pin carries the row under the cursor and the Y pin the slice of its sample
// across the rows (an empty block where the cursor stands past the rows).
#include "qv/QVWaterfall.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

using namespace qv;

namespace {

// Records the rate of a start and the last block a sink received.
struct TRecordingSink {
    double StartRate = -1.0;
    int32_t Blocks = 0;
    std::vector<double> Last;
    std::shared_ptr<TQWSinkPin> Pin = std::make_shared<TQWSinkPin>(
        std::initializer_list<TQVDataKind>{dkReal}, [this](TQWPin*, TQVDataKind, const TQWOperation& AOp, uint64_t) {
            if (const auto* Start = dynamic_cast<const TQWStartRateOperation*>(&AOp))
                StartRate = Start->GetSampleRate();
            if (const auto* Block = dynamic_cast<const TQWSuppliedBufferOperation*>(&AOp)) {
                const auto Buffer = std::dynamic_pointer_cast<const IQVRealBuffer>(Block->GetBuffer());
                Last.assign(Buffer->Read(), Buffer->Read() + Buffer->GetSize());
                ++Blocks;
            }
            return true;
        });
};

} // namespace

TEST(WaterfallCursor, OutputPinsCarryTheRowAndTheSliceUnderTheCursor)
{
    struct TCase {
        double X, Y;
        std::vector<double> Row, Slice;
    };
    // Four rows of five samples: row r holds r * 10 + j at sample j.
    const TCase Cases[] = {
        {2.0, 3.0, {20, 21, 22, 23, 24}, {3, 13, 23, 33}},
        {0.0, 0.0, {0, 1, 2, 3, 4}, {0, 10, 20, 30}},
        {3.0, 4.0, {30, 31, 32, 33, 34}, {4, 14, 24, 34}},
        {7.0, 1.0, {}, {1, 11, 21, 31}}, // no row 7 yet
    };
    for (const TCase& C : Cases) {
        TQVWaterfall Waterfall;
        TQLBitmap Bitmap{320, 240};
        TQLRecordingCanvas Canvas;
        Waterfall.SetBounds(0, 0, 320, 240);
        Waterfall.GetXAxis()->SetSamples(10);
        for (int32_t R = 0; R < 4; ++R) {
            std::vector<double> Row;
            for (int32_t J = 0; J < 5; ++J)
                Row.push_back(R * 10 + J);
            Waterfall.GetData()->AddData(Row.data(), 5);
        }
        TQVWaterfallCursor& Cursor = *Waterfall.GetCursors()->Add();
        Cursor.SetKind(ckBoth);
        Cursor.GetPosition()->SetXY(C.X, C.Y);
        TRecordingSink XSink, YSink;
        Cursor.GetXOutputPin()->Connect(*XSink.Pin);
        Cursor.GetYOutputPin()->Connect(*YSink.Pin);
        EXPECT_EQ(XSink.StartRate, 1.0);
        EXPECT_EQ(YSink.StartRate, 1.0);
        EXPECT_EQ(XSink.Blocks, 0);

        Waterfall.PaintToCanvas(Bitmap, Canvas, false);
        EXPECT_EQ(XSink.Blocks, 1) << C.X;
        EXPECT_EQ(XSink.Last, C.Row) << C.X;
        EXPECT_EQ(YSink.Last, C.Slice) << C.Y;
    }
}

// A press on a cursor's line drags it: the line moves where the button goes up, and the mouse
// over it lights the cursor. A cursor that cannot be dragged stays, and the press is a zoom.
TEST(WaterfallCursor, ADraggedCursorMovesWhereTheButtonGoesUp)
{
    for (const bool CanDrag : {true, false}) {
        TQVWaterfall Waterfall;
        TQLBitmap Bitmap{320, 240};
        TQLRecordingCanvas Canvas;
        Waterfall.SetBounds(0, 0, 320, 240);
        Waterfall.GetXAxis()->SetSamples(10);
        const std::vector<double> Row(5, 1.0);
        for (int32_t R = 0; R < 10; ++R)
            Waterfall.GetData()->AddData(Row.data(), 5);
        TQVWaterfallCursor& Cursor = *Waterfall.GetCursors()->Add();
        Cursor.SetCanDrag(CanDrag);
        Cursor.GetPosition()->SetXY(2.0, 1.0);
        Waterfall.PaintToCanvas(Bitmap, Canvas, false);
        const TQVDisplayAxis& XAxis = *Waterfall.GetXAxis();
        const TRect View = Waterfall.GetDataView()->GetDrawRect();
        const int32_t Y = (View.Top + View.Bottom) / 2, From = XAxis.ScaleToPixel(2.0), To = XAxis.ScaleToPixel(6.0);
        Waterfall.MouseMove(0, From, Y);
        EXPECT_EQ(Waterfall.GetHighlightInfo()->FHighlightedItem == &Cursor, CanDrag);
        Waterfall.MouseDown(mbLeft, 0, From, Y);
        Waterfall.MouseMove(0, To, Y);
        Waterfall.MouseUp(mbLeft, 0, To, Y);
        EXPECT_NEAR(Cursor.GetPosition()->GetX(), CanDrag ? 6.0 : 2.0, 0.1) << CanDrag;
        EXPECT_EQ(Waterfall.GetHighlightInfo()->FDraggedCursor, nullptr);
    }
}
