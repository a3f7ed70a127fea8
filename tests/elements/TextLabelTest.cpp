// Text labels: the name centred on the point, the hit box measured on the display's canvas,
// names by count.
#include "qv/QVScope.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace qv;

namespace {

struct TLabelScope {
    TLabelScope()
    {
        Scope.GetLegend()->SetVisible(false); // the plot takes the whole width
        Scope.SetBounds(0, 0, 400, 300);
        Bitmap.SetSize(400, 300);
        // The display measures text on this canvas outside a paint.
        Scope.SetCanvasFactory([](TQLBitmap&) { return std::make_unique<TQLRecordingCanvas>(); });
        Scope.Paint();
    }
    void Paint()
    {
        Canvas.ClearRecords();
        Scope.PaintToCanvas(Bitmap, Canvas, false);
    }
    TQVScope Scope;
    TQLBitmap Bitmap;
    TQLRecordingCanvas Canvas;
};

} // namespace

// The name is drawn in the label's own font with its centre on the point, half sizes
// truncated, and its box (6 pixels a character, 13 high) is what the mouse hits, right and
// bottom edges outside. An empty name draws nothing and is never hit; a hidden label neither.
TEST(TextLabel, DrawnAndHitCentredOnThePoint)
{
    TLabelScope S;
    TQVScopeTextLabels* Labels = S.Scope.GetLabels();
    TQVScopeTextLabel* Label = Labels->Add();
    EXPECT_EQ(Label->GetName(), "Label1");
    EXPECT_EQ(Labels->Add()->GetName(), "Label2");
    Labels->Delete(1);
    Label->SetName("abc");
    Label->GetFont()->SetSize(20);
    Label->GetPosition()->SetX(0);
    Label->GetPosition()->SetY(0.25);
    S.Paint();

    const TPoint P = Label->GetDrawPosition(TRect{});
    std::vector<TQLCanvasRecord> Texts;
    for (const TQLCanvasRecord& R : S.Canvas.Of("TextOut"))
        if (R.Text == "abc")
            Texts.push_back(R);
    ASSERT_EQ(Texts.size(), 1u);
    EXPECT_EQ(Texts[0].Text, "abc");
    EXPECT_EQ(Texts[0].Font.Size, 20);
    EXPECT_EQ(Texts[0].Args, (std::vector<int32_t>{P.X - 18 / 2, P.Y - 13 / 2}));

    struct TCase {
        TPoint Point;
        bool Hit;
    };
    const TCase Cases[] = {
        {{P.X - 9, P.Y - 6}, true}, {{P.X + 8, P.Y + 6}, true}, {{P.X + 9, P.Y}, false},
        {{P.X, P.Y + 7}, false},    {{P.X - 10, P.Y}, false},   {{P.X, P.Y - 7}, false},
    };
    for (const TCase& C : Cases)
        EXPECT_EQ(Labels->HitTest(C.Point.X, C.Point.Y) == Label, C.Hit) << C.Point.X << "," << C.Point.Y;

    Label->SetVisible(false);
    EXPECT_EQ(Labels->HitTest(P.X, P.Y), nullptr);
    Label->SetVisible(true);
    const size_t Before = S.Canvas.Count("TextOut");
    Label->SetName("");
    S.Paint();
    EXPECT_EQ(S.Canvas.Count("TextOut"), Before - 1);
    EXPECT_EQ(Labels->HitTest(P.X, P.Y), nullptr);
}

// The legend lights a label only when labels highlight from the legend; the label then
// reads as highlighted while labels light their legend button.
TEST(TextLabel, HighlightFromTheLegend)
{
    TLabelScope S;
    TQVScopeTextLabel* Label = S.Scope.GetLabels()->Add();
    TQVDisplayItemHighlighting* Settings = S.Scope.GetHighlighting()->GetLabels();
    Settings->SetHiglightFromLegend(false);
    Label->SetHighlighted(true);
    EXPECT_FALSE(Label->GetHighlighted());
    Settings->SetHiglightFromLegend(true);
    Label->SetHighlighted(true);
    EXPECT_TRUE(Label->GetHighlighted());
    Settings->SetHiglightLegendButton(false);
    EXPECT_FALSE(Label->GetHighlighted());
    Settings->SetHiglightLegendButton(true);
    Label->SetHighlighted(false);
    EXPECT_FALSE(Label->GetHighlighted());
}
