// Cursor links and text labels on a waterfall: a link measures between two of the
// waterfall's cursors (rows along X, samples along Y), its line is found and dragged by the
// mouse, labels are found under the mouse, and both are kept in the stored form with the
// link's ends resolved among the waterfall's own cursors.
#include "WaterfallTestSupport.h"
#include "qv/QVWaterfall.h"
#include "qv/foundation/QLStoredForm.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

using namespace qv;

namespace {

// Ten rows of five samples, painted once so that the layout stands.
struct TLinkedWaterfall : TWaterfallSurface {
    TLinkedWaterfall() : TWaterfallSurface(10)
    {
        // The display measures text on this canvas outside a paint.
        Waterfall.SetCanvasFactory([](TQLBitmap&) { return std::make_unique<TQLRecordingCanvas>(); });
        for (int32_t R = 0; R < 10; ++R)
            Add({1, 2, 3, 4, 5});
        Paint();
    }
    // Each paint's records alone.
    void Paint()
    {
        Canvas.ClearRecords();
        TWaterfallSurface::Paint();
    }
    TQVWaterfallCursorLink& Link(TQVDisplayCursorKind AKind, double AFrom, double ATo)
    {
        for (const double At : {AFrom, ATo}) {
            TQVWaterfallCursor& Cursor = *Waterfall.GetCursors()->Add();
            Cursor.SetKind(AKind);
            Cursor.GetPosition()->SetXY(AKind == ckVertical ? At : 0.0, AKind == ckVertical ? 0.0 : At);
        }
        TQVWaterfallCursorLink& Result = *Waterfall.GetCursorLinks()->Add();
        const int32_t Count = Waterfall.GetCursors()->GetCount();
        Result.SetBeginCursorIndex(Count - 2);
        Result.SetEndCursorIndex(Count - 1);
        return Result;
    }
    // The text written at (AX, AY), or null.
    const TQLCanvasRecord* TextAt(int32_t AX, int32_t AY) const
    {
        for (const TQLCanvasRecord& R : Canvas.GetRecords())
            if (R.Op == "TextOut" && R.Args[0] == AX && R.Args[1] == AY)
                return &R;
        return nullptr;
    }
};

} // namespace

// The difference is written over a line measuring along X (or beside one measuring along
// Y), at the line's place across the view (rounded half to even); two cursors at one place
// or a hidden cursor give nothing.
TEST(WaterfallLinks, ALinkMeasuresBetweenTheWaterfallsCursors)
{
    struct TCase {
        TQVDisplayCursorKind Kind;
        double From, To;
        bool HideEnd;
        const char* Template;
        bool Drawn;
    } Cases[] = {
        {ckVertical, 2.0, 6.0, false, "", true},     {ckHorizontal, 1.0, 3.0, false, "", true},
        {ckVertical, 2.0, 6.0, false, "d=%V", true}, {ckVertical, 3.0, 3.0, false, "", false},
        {ckHorizontal, 1.0, 3.0, true, "", false},
    };
    for (const TCase& C : Cases) {
        SCOPED_TRACE(testing::Message() << int(C.Kind) << " " << C.From << ".." << C.To << " " << C.Template);
        TLinkedWaterfall F;
        TQVWaterfallCursorLink& Link = F.Link(C.Kind, C.From, C.To);
        Link.GetMeasurementLine()->SetX(-50.0);
        Link.GetMeasurementLine()->SetY(50.0);
        Link.GetMeasurementLine()->GetMeasurementLabel()->SetText(C.Template);
        Link.GetEndCursor()->SetVisible(!C.HideEnd);
        F.Paint();

        const TRect V = F.Waterfall.GetDataView()->GetDrawRect();
        const TQVDisplayAxis& Axis =
            C.Kind == ckVertical ? static_cast<TQVDisplayAxis&>(*F.Waterfall.GetXAxis()) : *F.Waterfall.GetYAxis();
        const std::string Value = Axis.GetTickText(std::fabs(C.To - C.From));
        const std::string Text = C.Template[0] ? "d=" + Value : Value;
        const int32_t W = int32_t(Text.size()) * TQLRecordingCanvas::CharWidth;
        const TQLCanvasRecord* Written;
        if (C.Kind == ckVertical) {
            const int32_t Row = V.Top + int32_t(std::nearbyint(V.Height() * 0.25));
            const int32_t P1 = Axis.ScaleToPixel(std::min(C.From, C.To)),
                          P2 = Axis.ScaleToPixel(std::max(C.From, C.To));
            Written = F.TextAt(P1 + ((P2 - P1) - W) / 2, Row - TQLRecordingCanvas::LineHeight);
        } else {
            const int32_t Column = V.Left + int32_t(std::nearbyint(V.Width() * 0.25));
            const int32_t P1 = Axis.ScaleToPixel(std::max(C.From, C.To)),
                          P2 = Axis.ScaleToPixel(std::min(C.From, C.To));
            Written = F.TextAt(Column + 5, P1 + ((P2 - P1) - W) / 2);
        }
        ASSERT_EQ(Written != nullptr, C.Drawn);
        if (Written) {
            EXPECT_EQ(Written->Text, Text);
        }
    }
}

// Under the mouse: a link's line comes before a label, a label lights only where its text
// lies, and a press on the line drags it to where the button goes up.
TEST(WaterfallLinks, TheMouseFindsLinksAndLabelsAndDragsTheLine)
{
    TLinkedWaterfall F;
    TQVWaterfallCursorLink& Link = F.Link(ckVertical, 2.0, 6.0);
    TQVWaterfallTextLabel& Label = *F.Waterfall.GetLabels()->Add();
    Label.SetName("Peak");
    Label.GetPosition()->SetX(8.0);
    Label.GetPosition()->SetY(3.0);
    F.Paint();
    const TRect V = F.Waterfall.GetDataView()->GetDrawRect();
    const int32_t LineRow = V.Top + int32_t(std::nearbyint(V.Height() * 0.5));
    const int32_t LinkMid = F.Waterfall.GetXAxis()->ScaleToPixel(4.0);
    const TPoint LabelAt{F.Waterfall.GetXAxis()->ScaleToPixel(8.0), F.Waterfall.GetYAxis()->ScaleToPixel(3.0)};
    struct TCase {
        TPoint At;
        const TQLPersistent* Lit;
    } Cases[] = {
        {{LinkMid, LineRow}, &Link},
        {{LinkMid, LineRow + 5}, nullptr},
        {{LabelAt.X + 11, LabelAt.Y}, &Label},
        {{LabelAt.X + 13, LabelAt.Y}, nullptr},
    };
    for (const TCase& C : Cases) {
        F.Waterfall.MouseMove(0, C.At.X, C.At.Y);
        EXPECT_EQ(F.Waterfall.GetHighlightInfo()->FHighlightedItem, C.Lit) << C.At.X << "," << C.At.Y;
    }

    F.Waterfall.MouseMove(0, LinkMid, LineRow);
    F.Waterfall.MouseDown(mbLeft, 0, LinkMid, LineRow);
    EXPECT_EQ(F.Waterfall.GetHighlightInfo()->FDraggedLink, &Link);
    F.Waterfall.MouseMove(0, LinkMid, LineRow + 30);
    F.Waterfall.MouseUp(mbLeft, 0, LinkMid, LineRow + 30);
    EXPECT_EQ(F.Waterfall.GetHighlightInfo()->FDraggedLink, nullptr);
    F.Waterfall.MouseMove(0, LinkMid, LineRow + 30);
    EXPECT_EQ(F.Waterfall.GetHighlightInfo()->FHighlightedItem, &Link);
    // A drag is no zoom.
    EXPECT_FALSE(F.Waterfall.GetXAxis()->IsZoomed());
}

// Links and labels come back from the stored form, the links' ends among the new waterfall's
// cursors, and the legend lists them; an end past the cursors raises and leaves the link.
TEST(WaterfallLinks, LinksAndLabelsAreStoredAndListed)
{
    TQVWaterfall Source;
    for (int32_t I = 0; I < 3; ++I)
        Source.GetCursors()->Add();
    TQVWaterfallCursorLink& Link = *Source.GetCursorLinks()->Add();
    Link.SetBeginCursorIndex(2);
    Link.SetEndCursorIndex(0);
    Link.GetMeasurementLine()->SetY(-40.0);
    TQVWaterfallTextLabel& Label = *Source.GetLabels()->Add();
    Label.GetPosition()->SetX(4.0);
    const TQLStoredNode Saved = QLSaveObject(Source);
    EXPECT_EQ(QLSaveObject(TQVWaterfall()).Find("CursorLinks"), nullptr);

    TQVWaterfall Fresh;
    QLLoadObject(Fresh, Saved);
    ASSERT_EQ(Fresh.GetCursorLinks()->GetCount(), 1);
    const TQVWaterfallCursorLink& Loaded = *Fresh.GetCursorLinks()->GetItem(0);
    EXPECT_EQ(Loaded.GetBeginCursor(), Fresh.GetCursors()->GetItem(2));
    EXPECT_EQ(Loaded.GetEndCursor(), Fresh.GetCursors()->GetItem(0));
    EXPECT_EQ(Loaded.GetMeasurementLine()->GetY(), -40.0);
    ASSERT_EQ(Fresh.GetLabels()->GetCount(), 1);
    EXPECT_EQ(Fresh.GetLabels()->GetItem(0)->GetName(), "Label1");
    EXPECT_EQ(QLSaveObject(Fresh), Saved);

    EXPECT_THROW(Link.SetBeginCursorIndex(3), std::out_of_range);
    EXPECT_EQ(Link.GetBeginCursorIndex(), 2);

    // The legend takes room for a lone link or label, and none while there is nothing to list.
    for (const int32_t Kind : {0, 1, 2}) {
        TQVWaterfall Listed;
        Listed.SetCanvasFactory([](TQLBitmap&) { return std::make_unique<TQLRecordingCanvas>(); });
        if (Kind == 1)
            Listed.GetCursorLinks()->Add();
        if (Kind == 2)
            Listed.GetLabels()->Add();
        EXPECT_EQ(Listed.GetLegend()->GetAutoSize().cx > 0, Kind != 0) << Kind;
    }
}
