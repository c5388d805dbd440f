#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "bench_phone.h"
#include "event_handler.h"
#include "queue_load.h"

namespace TARN::Bench {

namespace {

/// N named tasks wait. Each that runs posts itself again, and takes the next one back to post it anew: a post, a
/// removal and another post for each that runs.
class Tasks {
public:
    Tasks(AppExecFwk::EventHandler& handler, size_t count) : handler_(handler) {
        for (size_t i = 0; i < count; ++i) {
            names_.push_back("periodic task " + std::to_string(i));
        }
        for (size_t i = 0; i < count; ++i) {
            Post(i);
        }
    }

    [[nodiscard]] int64_t Ran() const noexcept { return ran_; }

private:
    void Post(size_t i) {
        handler_.PostTask([this, i] { Run(i); }, names_[i], delays_.Next());
    }

    void Run(size_t i) {
        ++ran_;
        Post(i);
        const size_t next = (i + 1) % names_.size();
        handler_.RemoveTask(names_[next]);
        Post(next);
    }

    AppExecFwk::EventHandler& handler_;
    std::vector<std::string> names_;
    Delays delays_;
    int64_t ran_ = 0;
};

void NamedTasks(benchmark::State& state) {
    SilentObserver observer;
    Simulated::SimulatedPhone phone(0, 0, observer);
    const auto handler = phone.CreateEventHandler();
    Tasks tasks(*handler, static_cast<size_t>(state.range(0)));
    for (auto _ : state) {
        phone.Clock().RunThrough(phone.Clock().NowMs() + 10'000);
    }
    state.SetItemsProcessed(tasks.Ran());
}
BENCHMARK(NamedTasks)->Arg(16)->Arg(1000);

}  // namespace

}  // namespace TARN::Bench
