// Producers that hold channel writers while the control's thread deletes channels, clears
// them, loads a form or destroys the whole display: nothing crashes (the sanitizer builds
// watch), no call reaches a channel that is gone, and every sample is either taken or counted
// as dropped.
#include "qv/QVScope.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

using namespace qv;

TEST(ChannelWriter, ProducersSurviveTheirChannelsWhateverTakesThemAway)
{
    const std::vector<std::pair<const char*, std::function<void(std::unique_ptr<TQVScope>&)>>> Cases = {
        {"channel deleted", [](std::unique_ptr<TQVScope>& S) { S->GetChannels()->Delete(1); }},
        {"collection cleared", [](std::unique_ptr<TQVScope>& S) { S->GetChannels()->Clear(); }},
        {"form loaded", [](std::unique_ptr<TQVScope>& S) { QLLoadObject(*S, TQLStoredNode::MakeObject()); }},
        {"display destroyed", [](std::unique_ptr<TQVScope>& S) { S.reset(); }}};
    constexpr int kProducers = 4;
    constexpr uint32_t kBlock = 64;
    for (const auto& [Name, TakeAway] : Cases) {
        auto Scope = std::make_unique<TQVScope>();
        while (Scope->GetChannels()->GetCount() < kProducers)
            Scope->GetChannels()->Add();
        std::vector<std::shared_ptr<TQVChannelWriter>> Writers;
        std::vector<TQVScopeChannel*> Channels;
        for (TQVScopeChannel* Channel : *Scope->GetChannels()) {
            Writers.push_back(Channel->GetWriter());
            Channels.push_back(Channel);
        }

        std::atomic<bool> Stop{false};
        std::atomic<int> Started{0};
        std::vector<uint64_t> Offered(kProducers, 0), Taken(kProducers, 0);
        std::vector<std::thread> Producers;
        for (int P = 0; P < kProducers; ++P)
            Producers.emplace_back([&, P] {
                const std::vector<double> Block(kBlock, double(P));
                bool Counted = false;
                while (!Stop.load()) {
                    const bool Ok = P % 2 ? Writers[P]->AddYData(Block.data(), kBlock) : Writers[P]->AddYPoint(P);
                    const uint64_t N = P % 2 ? kBlock : 1;
                    Offered[P] += N;
                    Taken[P] += Ok ? N : 0;
                    if (!Counted) {
                        Counted = true;
                        ++Started;
                    }
                }
            });
        while (Started.load() < kProducers)
            std::this_thread::yield();
        TakeAway(Scope);
        // Calls after the channel went must find it gone.
        for (int P = 0; P < kProducers; ++P) {
            if (!Writers[P]->IsAttached()) {
                EXPECT_FALSE(Writers[P]->AddYPoint(1.0)) << Name;
            }
        }
        Stop = true;
        for (auto& T : Producers)
            T.join();

        int Detached = 0;
        for (int P = 0; P < kProducers; ++P) {
            Detached += Writers[P]->IsAttached() ? 0 : 1;
            const uint64_t Late = Writers[P]->IsAttached() ? 0 : 1; // the probe call above
            EXPECT_EQ(Offered[P] + Late, Taken[P] + Writers[P]->GetDroppedSamples()) << Name << ", producer " << P;
            if (Writers[P]->IsAttached()) {
                EXPECT_EQ(uint64_t(Channels[P]->GetData()->GetSize()), Taken[P]) << Name;
            }
        }
        EXPECT_GE(Detached, 1) << Name;
    }
}
