// Highlighting settings: defaults per kind, what the stored form keeps, and repaint on change.
#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/display/QVDataDisplay.h"
#include "qv/foundation/QLStoredForm.h"

#include <gtest/gtest.h>

using namespace qv;

namespace {

class THighlightDisplay : public TQVDataDisplay {
public:
    bool PopulateDrawBuffers() override { return false; }
    void ClearRefreshFlag() { FRefreshImage = false; }
};

} // namespace

TEST(Highlighting, DefaultsStoreNothingAndChangesRoundTripAndRepaint)
{
    THighlightDisplay Display;
    TQVDataDisplayHighlighting H(&Display);
    for (const TQVDisplayItemHighlighting* Kind :
         {H.GetMarkers(), H.GetCursors(), H.GetLabels(), H.GetCursorLinks(), H.GetZones(), H.GetEllipses()})
        EXPECT_TRUE(Kind->GetHiglightLegendButton() && Kind->GetHiglightFromLegend() && Kind->GetHiglightFromMouse() &&
                    Kind->GetColor() == 0xFFE67FE7u);
    // Channels and channel links do not light from the mouse unless asked.
    EXPECT_FALSE(H.GetChannels()->GetHiglightFromMouse() || H.GetChannelLinks()->GetHiglightFromMouse());
    EXPECT_TRUE(H.GetMouseHitPoint()->GetEnabled() && H.GetMouseHitPoint()->GetUseChannelColor());
    EXPECT_TRUE(QLSaveObject(H).Members.empty());

    // An element is taken by the mouse when it lights itself or only its legend button.
    H.GetCursors()->SetHiglightFromMouse(false);
    EXPECT_TRUE(H.GetCursors()->GetMouseHighlighting());
    H.GetCursors()->SetHiglightLegendButton(false);
    EXPECT_FALSE(H.GetCursors()->GetMouseHighlighting());

    // A channel kind's true and a marker kind's false both depart from their defaults.
    Display.ClearRefreshFlag();
    H.GetChannels()->SetHiglightFromMouse(true);
    EXPECT_TRUE(Display.GetRefreshImage());
    H.GetMarkers()->SetHiglightFromMouse(false);
    H.GetMouseHitPoint()->GetPointLabel()->SetText("%X");
    const TQLStoredNode Stored = QLSaveObject(H);
    EXPECT_EQ(Stored.Find("Zones"), nullptr);
    TQVDataDisplayHighlighting Copy(&Display);
    QLLoadObject(Copy, Stored);
    EXPECT_TRUE(Copy.GetChannels()->GetHiglightFromMouse());
    EXPECT_FALSE(Copy.GetMarkers()->GetHiglightFromMouse() || Copy.GetCursors()->GetMouseHighlighting());
    EXPECT_EQ(Copy.GetMouseHitPoint()->GetPointLabel()->GetText(), "%X");
    EXPECT_FALSE(Copy.GetChannelLinks()->GetHiglightFromMouse());
}
