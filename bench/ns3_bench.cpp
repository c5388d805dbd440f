// What the queue of the simulated phone is held against: the scheduler of ns-3, a simulator of networks.
#include <benchmark/benchmark.h>
#include <ns3/heap-scheduler.h>
#include <ns3/map-scheduler.h>
#include <ns3/nstime.h>
#include <ns3/object-factory.h>
#include <ns3/simulator.h>

#include <vector>

#include "queue_load.h"

namespace TARN::Bench {

namespace {

/// As Tasks of the simulated phone's queue, by the event that stands for a name.
class Events {
public:
    explicit Events(size_t count) : waiting_(count) {
        for (size_t i = 0; i < count; ++i) {
            Post(i);
        }
    }

    [[nodiscard]] int64_t Ran() const noexcept { return ran_; }

private:
    void Post(size_t i) {
        waiting_[i] = ns3::Simulator::Schedule(ns3::MilliSeconds(delays_.Next()), &Events::Run, this, i);
    }

    void Run(size_t i) {
        ++ran_;
        Post(i);
        const size_t next = (i + 1) % waiting_.size();
        ns3::Simulator::Remove(waiting_[next]);
        Post(next);
    }

    std::vector<ns3::EventId> waiting_;
    Delays delays_;
    int64_t ran_ = 0;
};

template <class Scheduler>
void NsThreeEvents(benchmark::State& state) {
    ns3::ObjectFactory factory;
    factory.SetTypeId(Scheduler::GetTypeId());
    ns3::Simulator::SetScheduler(factory);
    Events events(static_cast<size_t>(state.range(0)));
    for (auto _ : state) {
        ns3::Simulator::Stop(ns3::MilliSeconds(10'000));
        ns3::Simulator::Run();
    }
    state.SetItemsProcessed(events.Ran());
    ns3::Simulator::Destroy();
}
BENCHMARK(NsThreeEvents<ns3::MapScheduler>)->Name("Ns3Map")->Arg(16)->Arg(1000);
BENCHMARK(NsThreeEvents<ns3::HeapScheduler>)->Name("Ns3Heap")->Arg(16)->Arg(1000);

}  // namespace

}  // namespace TARN::Bench
