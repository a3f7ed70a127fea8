// The lock and its setter family: the common rule of every property write, re-entrancy,
// chained locks sharing one exclusion domain, the destroy guard and guard ownership.
#include "qv/foundation/QLLock.h"
#include "qv/foundation/QLTypes.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <limits>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

using namespace qv;
using namespace std::chrono_literals;

namespace {

enum TColourMode : uint8_t { cmOne, cmTwo, cmThree };

// Another thread that tries to take a lock, to show whether the lock is held. The lock must be
// free (or on its way out) by the time the contender is destroyed.
class TContender {
public:
    explicit TContender(TQLLockPtr ALock)
        : FThread([this, ALock] {
              auto Guard = ALock->AcquireWrite();
              FGot = static_cast<bool>(Guard);
              FDone = true;
          })
    {}
    TContender(const TContender&) = delete;
    TContender& operator=(const TContender&) = delete;
    ~TContender() { FThread.join(); }

    // Whether the other thread has come back from AcquireWrite within AWait, and with a guard.
    bool Returned(std::chrono::milliseconds AWait)
    {
        const auto Until = std::chrono::steady_clock::now() + AWait;
        while (!FDone.load() && std::chrono::steady_clock::now() < Until)
            std::this_thread::sleep_for(1ms);
        return FDone.load();
    }
    bool Acquired(std::chrono::milliseconds AWait = 5s) { return Returned(AWait) && FGot.load(); }

private:
    std::atomic<bool> FDone{false};
    std::atomic<bool> FGot{false};
    std::thread FThread;
};

// Runs ACall, expects std::invalid_argument whose message names AText.
template <class F>
void ExpectInvalid(F ACall, const std::string& AText)
{
    try {
        ACall();
        ADD_FAILURE() << "accepted; expected an error naming " << AText;
    } catch (const std::invalid_argument& E) {
        EXPECT_NE(std::string(E.what()).find(AText), std::string::npos) << E.what();
    }
}

struct TSetterLog {
    std::vector<std::string> Events;
    TQLLockPtr Lock;
    TQLBasicLock& Basic() { return *Lock->GetBasicLock(); }
    TSetterLog() : Lock(QLMakeLock([this] { Events.push_back("notify"); })) {}
};

} // namespace

TEST(LockSetter, CommonRuleForEveryValueKind)
{
    TSetterLog Log;
    int32_t Field = 5;
    EXPECT_FALSE(Log.Basic().Setter(Field, 5, [&] { Log.Events.push_back("proc"); }));
    EXPECT_TRUE(Log.Events.empty());
    EXPECT_TRUE(Log.Basic().Setter(Field, 6, [&] {
        EXPECT_EQ(Field, 6) << "the value is stored before the closure runs";
        Log.Events.push_back("proc");
    }));
    EXPECT_EQ(Log.Events, (std::vector<std::string>{"proc", "notify"}));

    size_t Changes = Log.Events.size();
    auto Check = [&](auto AField, auto AOther) {
        const auto Start = AField;
        EXPECT_FALSE(Log.Basic().Setter(AField, Start));
        EXPECT_TRUE(Log.Basic().Setter(AField, AOther));
        EXPECT_TRUE(AField == AOther);
        EXPECT_EQ(Log.Events.size(), ++Changes);
    };
    Check(false, true);
    Check(std::string("a"), std::string("bb"));
    Check(cmOne, cmThree);
    Check(TPoint{1, 2}, TPoint{1, 3}); // records compare member by member
    std::string Text = "a";
    EXPECT_FALSE(Log.Basic().Setter(Text, "a")); // a literal against a string field

    // Colour form; empty closures are skipped while the notification still runs.
    uint32_t Colour = 0xFF000000;
    EXPECT_FALSE(Log.Basic().Setter(Colour, 0xFF000000u, TQLNotifyProc(), false));
    EXPECT_TRUE(Log.Basic().Setter(Colour, 0xFFFF0000u, TQLNotifyProc(), false));
    EXPECT_EQ(Colour, 0xFFFF0000u);
    void (*NullProc)() = nullptr;
    EXPECT_TRUE(Log.Basic().Setter(Field, 1, NullProc));
    EXPECT_EQ(Log.Events.size(), Changes + 2);
}

TEST(LockSetter, BoundedSettersClampBeforeComparingAndRefuseNaN)
{
    TSetterLog Log;
    int Procs = 0;
    int32_t Width = 1;
    EXPECT_FALSE(Log.Basic().SetterMin(Width, -5, 1, [&] { ++Procs; })) << "raised to the present value";
    EXPECT_TRUE(Log.Basic().SetterMin(Width, 4, 1, [&] { ++Procs; }));
    EXPECT_EQ(Procs, 1);

    int32_t Size = 10;
    EXPECT_TRUE(Log.Basic().SetterMinMax(Size, 5000, 1, 1000));
    EXPECT_EQ(Size, 1000);
    EXPECT_FALSE(Log.Basic().SetterMinMax(Size, 1001, 1, 1000)) << "clamped to the present value";

    double Ratio = 0.5;
    EXPECT_TRUE(Log.Basic().SetterMinMax(Ratio, -std::numeric_limits<double>::infinity(), 0.0, 1.0));
    EXPECT_EQ(Ratio, 0.0);
    EXPECT_EQ(Log.Events.size(), 3u);

    // NaN and inverted bounds are refused, naming the bad value, and change nothing.
    const double NaN = std::numeric_limits<double>::quiet_NaN();
    ExpectInvalid([&] { Log.Basic().SetterMinMax(Ratio, NaN, 0.0, 1.0); }, "nan");
    ExpectInvalid([&] { Log.Basic().SetterMin(Ratio, NaN, 0.0); }, "nan");
    ExpectInvalid([&] { Log.Basic().SetterMinMax(Size, 4, 10, 1); }, "10");
    EXPECT_EQ(Ratio, 0.0);
    EXPECT_EQ(Size, 1000);
    EXPECT_EQ(Log.Events.size(), 3u);
}

TEST(LockSetter, ClosuresAndNotificationsMayWriteThroughTheHeldLock)
{
    TSetterLog Log;
    int32_t Width = 1;
    int32_t Derived = 0;
    EXPECT_TRUE(Log.Basic().Setter(Width, 4, [&] {
        Log.Events.push_back("proc");
        Log.Basic().Setter(Derived, Width * 2, [&] { Log.Events.push_back("inner"); });
    }));
    EXPECT_EQ(Derived, 8);
    EXPECT_EQ(Log.Events, (std::vector<std::string>{"proc", "inner", "notify", "notify"}));

    // A notification writing another field stops at the equality check once the values agree.
    auto Lock = QLMakeLock();
    int32_t A = 0;
    int32_t Mirror = 0;
    int Notifies = 0;
    Lock->GetBasicLock()->SetNotify([&] {
        ++Notifies;
        Lock->GetBasicLock()->Setter(Mirror, A);
    });
    EXPECT_TRUE(Lock->GetBasicLock()->Setter(A, 9));
    EXPECT_EQ(Mirror, 9);
    EXPECT_EQ(Notifies, 2);
}

TEST(LockChain, ChainedLockNotifiesItselfButHoldsTheRoot)
{
    int RootCalls = 0;
    int ChildCalls = 0;
    auto Root = QLMakeLock([&] { ++RootCalls; });
    auto Child = QLMakeChainedLock(Root, [&] { ++ChildCalls; });
    int32_t Field = 0;
    Child->GetBasicLock()->Setter(Field, 1);
    EXPECT_EQ(ChildCalls, 1);
    EXPECT_EQ(RootCalls, 0);

    auto Grandchild = QLMakeChainedLock(Child, {});
    auto Guard = Grandchild->AcquireRead();
    ASSERT_TRUE(Guard);
    TContender Other(Root);
    EXPECT_FALSE(Other.Returned(100ms));
    EXPECT_TRUE(Root->AcquireWrite()) << "re-entrant on the holding thread";
    EXPECT_FALSE(Other.Returned(20ms)) << "a nested guard must not release the outer one";
    Guard.Release();
    EXPECT_TRUE(Other.Acquired());
}

TEST(LockChain, ChainedLocksOfOneRootSerialise)
{
    auto Root = QLMakeLock();
    std::vector<TQLLockPtr> Locks{QLMakeChainedLock(Root, {}), QLMakeChainedLock(QLMakeChainedLock(Root, {}), {}),
                                  Root};
    std::atomic<int> Inside{0};
    std::atomic<int> Overlaps{0};
    std::atomic<bool> Go{false};
    int64_t Shared = 0; // written only under the guard
    constexpr int Rounds = 2000;

    std::vector<std::thread> Threads;
    for (const TQLLockPtr& Lock : Locks)
        Threads.emplace_back([&, Lock] {
            while (!Go.load())
                std::this_thread::yield();
            for (int I = 0; I < Rounds; ++I) {
                auto Guard = (I % 2) ? Lock->AcquireWrite() : Lock->AcquireRead();
                if (Inside.fetch_add(1) != 0)
                    ++Overlaps;
                const int64_t Seen = Shared;
                if (I % 64 == 0)
                    std::this_thread::yield();
                Shared = Seen + 1;
                Inside.fetch_sub(1);
            }
        });
    Go = true;
    for (std::thread& T : Threads)
        T.join();
    EXPECT_EQ(Overlaps.load(), 0);
    EXPECT_EQ(Shared, int64_t(Rounds) * int64_t(Locks.size()));
}

TEST(LockDestroy, DestroyGuardEmptiesLaterGuardsHereAndBelow)
{
    int Notifies = 0;
    auto Root = QLMakeLock([&] { ++Notifies; });
    auto Child = QLMakeChainedLock(Root, [&] { ++Notifies; });
    auto Destroy = Root->AcquireDestroy();
    ASSERT_TRUE(Destroy);
    EXPECT_TRUE(Child->IsDestroying());
    EXPECT_FALSE(Root->AcquireWrite());
    EXPECT_FALSE(Child->AcquireRead());

    // On the way out a setter keeps the value but notifies nobody.
    int32_t Field = 0;
    int Procs = 0;
    EXPECT_TRUE(Child->GetBasicLock()->Setter(Field, 3, [&] { ++Procs; }));
    EXPECT_EQ(Field, 3);
    EXPECT_EQ(Procs + Notifies, 0);

    // Other threads do not wait for the destroying one: they come back at once, empty.
    TContender Other(Child);
    EXPECT_TRUE(Other.Returned(5s));
    EXPECT_FALSE(Other.Acquired());
}

TEST(LockDestroy, DestroyOfAChainedLockLeavesRootAndSiblingsWorking)
{
    auto Root = QLMakeLock();
    auto Doomed = QLMakeChainedLock(Root, {});
    auto Below = QLMakeChainedLock(Doomed, {});
    EXPECT_TRUE(Doomed->AcquireDestroy());
    EXPECT_FALSE(Below->AcquireRead());
    EXPECT_FALSE(Root->IsDestroying());
    TContender Other(QLMakeChainedLock(Root, {})); // the destroy guard released the root
    EXPECT_TRUE(Other.Acquired());
}

TEST(LockDestroy, WaiterComesBackEmptyWhenDestroyStartedMeanwhile)
{
    auto Root = QLMakeLock();
    auto Child = QLMakeChainedLock(Root, {});
    auto Held = Root->AcquireWrite();
    auto Waiter = std::async(std::launch::async, [Child] { return static_cast<bool>(Child->AcquireWrite()); });
    EXPECT_EQ(Waiter.wait_for(50ms), std::future_status::timeout) << "the waiter must block on the held lock";
    EXPECT_TRUE(Root->AcquireDestroy()); // re-entrant on this thread
    Held.Release();
    ASSERT_EQ(Waiter.wait_for(5s), std::future_status::ready);
    EXPECT_FALSE(Waiter.get());
}

TEST(LockGuard, MoveTransfersOwnershipAndReleaseHappensOnce)
{
    auto Root = QLMakeLock();
    TQLLockGuard Outer;
    EXPECT_FALSE(Outer);
    {
        auto Guard = Root->AcquireWrite();
        TQLLockGuard Moved(std::move(Guard));
        EXPECT_FALSE(Guard); // NOLINT(bugprone-use-after-move): the moved-from guard is empty
        Outer = std::move(Moved);
        EXPECT_FALSE(Moved); // NOLINT(bugprone-use-after-move)
        // A nested guard released twice, then destroyed, unlocks once only.
        auto Nested = Root->AcquireWrite();
        Nested.Release();
        Nested.Release();
    }
    TContender Other(Root);
    EXPECT_FALSE(Other.Returned(100ms)) << "the lock moved into Outer is still held";
    TQLLockGuard& Alias = Outer;
    Outer = std::move(Alias);
    EXPECT_TRUE(Outer) << "self-assignment keeps the guard";
    EXPECT_FALSE(Other.Returned(20ms));
    Outer = TQLLockGuard(); // assigning over a held guard releases what it held
    EXPECT_TRUE(Other.Acquired());
}

TEST(LockGuard, ExceptionFromAClosureReleasesTheGuard)
{
    auto Root = QLMakeLock();
    int32_t Field = 0;
    EXPECT_THROW(Root->GetBasicLock()->Setter(Field, 1, [] { throw std::runtime_error("closure failed"); }),
                 std::runtime_error);
    EXPECT_EQ(Field, 1);
    TContender Other(Root);
    EXPECT_TRUE(Other.Acquired());
}

// Work queued while a thread holds the lock (here through a chained lock) waits for the
// thread's outermost guard and then runs with the lock free, in the order queued; queued
// with the lock free it runs at once; on a lock on its way out it is dropped.
TEST(LockGuard, RunAfterReleaseWaitsForTheOutermostGuard)
{
    auto Root = QLMakeLock();
    auto Chained = QLMakeChainedLock(Root, {});
    std::vector<std::string> Ran;
    bool FreeWhileRunning = false;
    {
        auto Outer = Root->AcquireWrite();
        {
            auto Inner = Chained->AcquireWrite();
            EXPECT_TRUE(Chained->GetBasicLock()->RunAfterRelease([&] {
                Ran.push_back("first");
                FreeWhileRunning = std::async(std::launch::async, [&] { return bool(Root->AcquireWrite()); }).get();
            }));
            EXPECT_TRUE(Root->GetBasicLock()->RunAfterRelease([&] { Ran.push_back("second"); }));
        }
        EXPECT_TRUE(Ran.empty()) << "an inner guard's release runs nothing";
    }
    EXPECT_EQ(Ran, (std::vector<std::string>{"first", "second"}));
    EXPECT_TRUE(FreeWhileRunning);

    EXPECT_TRUE(Root->GetBasicLock()->RunAfterRelease([&] { Ran.push_back("now"); }));
    EXPECT_EQ(Ran.back(), "now");

    auto Destroy = Chained->AcquireDestroy();
    EXPECT_FALSE(Chained->GetBasicLock()->RunAfterRelease([&] { Ran.push_back("late"); }));
    Destroy.Release();
    EXPECT_EQ(Ran.back(), "now");
}
