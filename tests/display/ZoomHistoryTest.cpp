// The zoom history: snapshots, the bounded stack, and undo and redo on a display.
#include "display/ZoomTestSupport.h"

#include "qv/foundation/QLCollection.h"

#include <stdexcept>

namespace qvtest {
namespace {

using TZoomHistory = TZoomFixture;

TEST_F(TZoomHistory, SnapshotsCompareOnlyTheWindowsThatShow)
{
    TQVAxisZoomList A, B;
    A.Add(TQVAxisZoomListItem{&X, 1.0, 2.0, false});
    A.Add(TQVAxisZoomListItem{&Y, 5.0, 6.0, true});
    B.Add(TQVAxisZoomListItem{&Y, 5.0, 6.0, true});
    B.Add(TQVAxisZoomListItem{&X, 7.0, 9.0, false}); // not zoomed: its window does not count
    EXPECT_TRUE(A.IsEqual(B));

    TQVAxisZoomList Moved;
    Moved.Add(TQVAxisZoomListItem{&X, 1.0, 2.0, false});
    Moved.Add(TQVAxisZoomListItem{&Y, 5.0, 6.5, true});
    EXPECT_FALSE(A.IsEqual(Moved));

    TTestAxis Z{&Display, true, vaRight};
    TQVAxisZoomList OtherAxis;
    OtherAxis.Add(TQVAxisZoomListItem{&X, 1.0, 2.0, false});
    OtherAxis.Add(TQVAxisZoomListItem{&Z, 5.0, 6.0, true});
    EXPECT_FALSE(A.IsEqual(OtherAxis));

    TQVAxisZoomList Shorter;
    Shorter.Add(TQVAxisZoomListItem{&Y, 5.0, 6.0, true});
    EXPECT_FALSE(A.IsEqual(Shorter));
    EXPECT_THROW(A.GetItem(2), EQLListError);
}

TEST_F(TZoomHistory, TheStackKeepsAHundredDistinctSnapshots)
{
    TQVDisplayZoomList Stack;
    std::unique_ptr<TQVAxisZoomList> Popped;
    EXPECT_FALSE(Stack.Get(Popped));
    EXPECT_EQ(Popped, nullptr);
    EXPECT_THROW(Stack.Add(nullptr), std::invalid_argument);

    auto Snapshot = [this](double AMin) {
        auto List = std::make_unique<TQVAxisZoomList>();
        List->Add(TQVAxisZoomListItem{&X, AMin, AMin + 1.0, true});
        return List;
    };
    for (int I = 0; I < 101; ++I)
        Stack.Add(Snapshot(I));
    Stack.Add(Snapshot(100)); // a repeat of the top
    ASSERT_EQ(Stack.GetCount(), TQVDisplayZoomList::MaxDepth);

    ASSERT_TRUE(Stack.Get(Popped));
    EXPECT_EQ(Popped->GetItem(0).Min, 100.0);
    while (Stack.GetCount() > 1)
        Stack.Get(Popped);
    Stack.Get(Popped);
    EXPECT_EQ(Popped->GetItem(0).Min, 1.0) << "the oldest snapshot fell out";
    EXPECT_FALSE(Stack.HasItems());
}

TEST_F(TZoomHistory, UndoAndRedoWalkBackAndForth)
{
    const std::vector<double> Full = Windows();
    Display.ZoomTo(10, 50, 20, 80);
    const std::vector<double> First = Windows();
    EXPECT_EQ(First, (std::vector<double>{10, 50, 20, 80}));
    Display.ZoomTo(20, 30, 40, 45);
    const std::vector<double> Second = Windows();

    Display.UndoZoom();
    EXPECT_EQ(Windows(), First);
    Display.UndoZoom();
    EXPECT_EQ(Windows(), Full);
    EXPECT_FALSE(Display.IsZoomed());
    EXPECT_FALSE(Display.CanUndoZoom());
    EXPECT_TRUE(Display.CanRedoZoom());

    Display.RedoZoom();
    EXPECT_EQ(Windows(), First);
    Display.RedoZoom();
    EXPECT_EQ(Windows(), Second);
    EXPECT_FALSE(Display.CanRedoZoom());

    // A new zoom after an undo forgets what could be redone.
    Display.UndoZoom();
    Display.ZoomBy(0.5);
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
    Display.ZoomTo(10, 50, 20, 80);
    Display.ZoomTo(10, 50, 20, 80);
    Display.ZoomTo(10, 50, 20, 80);
    EXPECT_EQ(Display.GetUndoList().GetCount(), 2) << "full, then the window once";

    Display.ZoomTo(1, 2, 3, 4, false);
    EXPECT_EQ(Display.GetUndoList().GetCount(), 2);
    Display.ZoomBy(2.0, false);
    EXPECT_EQ(Display.GetUndoList().GetCount(), 2);

    Display.ClearZoomUndo();
    EXPECT_FALSE(Display.CanUndoZoom());
    EXPECT_FALSE(Display.CanRedoZoom());
}

TEST_F(TZoomHistory, AnUndoOnAnEmptyStackOnlyFillsTheRedoStack)
{
    Display.UndoZoom();
    EXPECT_TRUE(Display.CanRedoZoom());
    EXPECT_FALSE(Display.CanUndoZoom());
    EXPECT_TRUE(Reports.empty());
    Display.RedoZoom();
    EXPECT_FALSE(Display.IsZoomed());
}

TEST_F(TZoomHistory, TheHundredFirstZoomDropsTheOldestStep)
{
    for (int I = 0; I < 101; ++I)
        Display.ZoomTo(I * 0.1, 50 + I * 0.1, 0, 50);
    EXPECT_EQ(Display.GetUndoList().GetCount(), 100);
    for (int I = 0; I < 100; ++I)
        Display.UndoZoom();
    EXPECT_FALSE(Display.CanUndoZoom());
    EXPECT_DOUBLE_EQ(X.WindowMin(), 0.0) << "the first zoom, not the full range, which fell out";
    EXPECT_DOUBLE_EQ(X.WindowMax(), 50.0);
    EXPECT_TRUE(Display.IsZoomed());
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
