// The zoom history: snapshots, the bounded stack, and undo and redo on a display.
#include "display/ZoomTestSupport.h"

#include "qv/foundation/QLCollection.h"

#include <stdexcept>

namespace qvtest {
namespace {

using TZoomHistory = TZoomFixture;

TEST_F(TZoomHistory, SnapshotsCompareOnlyTheWindowsThatShow)
{
    TTestAxis Z{&Display, true, vaRight};
    auto List = [](std::initializer_list<TQVAxisZoomListItem> AItems) {
        TQVAxisZoomList Result;
        for (const TQVAxisZoomListItem& Item : AItems)
            Result.Add(Item);
        return Result;
    };
    const TQVAxisZoomList A = List({{&X, 1, 2, false}, {&Y, 5, 6, true}});
    EXPECT_TRUE(A.IsEqual(List({{&Y, 5, 6, true}, {&X, 7, 9, false}}))) << "order and hidden windows do not count";
    EXPECT_FALSE(A.IsEqual(List({{&X, 1, 2, false}, {&Y, 5, 6.5, true}})));
    EXPECT_FALSE(A.IsEqual(List({{&X, 1, 2, false}, {&Z, 5, 6, true}})));
    EXPECT_FALSE(A.IsEqual(List({{&Y, 5, 6, true}})));
    EXPECT_THROW(A.GetItem(2), EQLListError);

    TQVDisplayZoomList Stack;
    std::unique_ptr<TQVAxisZoomList> Popped = std::make_unique<TQVAxisZoomList>();
    EXPECT_FALSE(Stack.Get(Popped));
    EXPECT_EQ(Popped, nullptr);
    EXPECT_THROW(Stack.Add(nullptr), std::invalid_argument);
}

TEST_F(TZoomHistory, UndoAndRedoWalkBackAndForth)
{
    // Undo with nothing to undo still keeps the present zoom for a redo, and reports nothing.
    Display.UndoZoom();
    EXPECT_TRUE(Display.CanRedoZoom());
    EXPECT_TRUE(Reports.empty());

    const std::vector<double> Full = Windows();
    Display.ZoomTo(10, 50, 20, 80);
    const std::vector<double> First = Windows();
    EXPECT_EQ(First, (std::vector<double>{10, 50, 20, 80}));
    EXPECT_FALSE(Display.CanRedoZoom()) << "a new zoom forgets what could be redone";
    Display.ZoomTo(20, 30, 40, 45);
    const std::vector<double> Second = Windows();

    // Back to the full ranges and forth again, step by step.
    const std::vector<std::vector<double>> Steps{Second, First, Full, First, Second};
    for (size_t I = 1; I < Steps.size(); ++I) {
        I < 3 ? Display.UndoZoom() : Display.RedoZoom();
        EXPECT_EQ(Windows(), Steps[I]) << "step " << I;
        EXPECT_EQ(Display.IsZoomed(), I != 2);
        EXPECT_EQ(Display.CanUndoZoom(), I != 2);
    }
    EXPECT_FALSE(Display.CanRedoZoom());
}

TEST_F(TZoomHistory, AWheelBurstIsOneUndoStep)
{
    const TPoint Centre{260, 170};
    for (int I = 0; I < 10; ++I)
        Display.MouseWheelZoom(Centre, 0.9, 0.9);
    EXPECT_EQ(Display.GetUndoList().GetCount(), 1);
    Display.UndoZoom();
    EXPECT_FALSE(Display.IsZoomed());

    // Undo ends the burst; a ZoomBy between two bursts makes a step of its own.
    Display.MouseWheelZoom(Centre, 0.9, 0.9);
    Display.MouseWheelZoom(Centre, 0.9, 0.9);
    Display.ZoomBy(0.5);
    Display.MouseWheelZoom(Centre, 1.1, 1.1);
    Display.MouseWheelZoom(Centre, 1.1, 1.1);
    EXPECT_EQ(Display.GetUndoList().GetCount(), 3);
}

TEST_F(TZoomHistory, RepeatsAndSkippedHistoryStoreNothing)
{
    for (int I = 0; I < 3; ++I)
        Display.ZoomTo(10, 50, 20, 80);
    EXPECT_EQ(Display.GetUndoList().GetCount(), 2) << "full, then the window once";
    Display.ZoomTo(1, 2, 3, 4, false);
    Display.ZoomBy(2.0, false);
    EXPECT_EQ(Display.GetUndoList().GetCount(), 2);

    Display.UndoZoom();
    Display.ClearZoomUndo();
    EXPECT_FALSE(Display.CanUndoZoom());
    EXPECT_FALSE(Display.CanRedoZoom());
}

TEST_F(TZoomHistory, TheHundredFirstZoomDropsTheOldestStep)
{
    for (int I = 0; I < 101; ++I)
        Display.ZoomTo(I * 0.1, 50 + I * 0.1, 0, 50);
    EXPECT_EQ(Display.GetUndoList().GetCount(), TQVDisplayZoomList::MaxDepth);
    for (int I = 0; I < 100; ++I)
        Display.UndoZoom();
    EXPECT_EQ(Windows(), (std::vector<double>{0, 50, 0, 50})) << "the first zoom; the full range fell out";
}

TEST_F(TZoomHistory, AnAxisThatIsGoneIsSkippedOnUndo)
{
    auto Extra = std::make_unique<TListedAxis>(&Display, false, 0.0, 1000.0);
    Display.ZoomTo(10, 50, 20, 80);
    Display.ZoomTo(20, 30, 20, 80);
    Extra.reset();
    Display.UndoZoom();
    EXPECT_EQ(Windows(), (std::vector<double>{10, 50, 20, 80}));
    Display.UndoZoom();
    EXPECT_FALSE(Display.IsZoomed());
}

} // namespace
} // namespace qvtest
