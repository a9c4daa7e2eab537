// One notification walked over 1, 10 and 1000 listeners, each adding the code
// to a counter: Tovik's notifier (plain listeners and function hooks) against
// Boost.Signals2, libsigc++ and a loop over std::function.
#include <benchmark/benchmark.h>

#include <functional>
#include <memory>
#include <vector>

#include "scc_event.h"

#if TOVIK_HAVE_BOOST
#include <boost/signals2/signal.hpp>
#endif
#if TOVIK_HAVE_SIGCXX
#include <sigc++/sigc++.h>
#endif

namespace {

constexpr int kCode = EvChanged;

// Each case checks its sum once, so that a fast wrong walk cannot pass.
void CheckSum(benchmark::State &state, long sum) {
  long const expected = static_cast<long>(state.iterations()) * state.range(0) * kCode;
  if (sum != expected) state.SkipWithError("wrong sum");
}

class Counter final : public SCC_EventNode<int> {
 public:
  explicit Counter(long *s) : sum(s) {}
  int OnNotification(int code, int *) override {
    *sum += code;
    return 0;
  }
  long *sum;
};

void TovikNodes(benchmark::State &state) {
  long sum = 0;
  SCC_Notifier notifier;
  std::vector<std::unique_ptr<Counter>> listeners;
  for (int i = 0; i < state.range(0); ++i) {
    listeners.push_back(std::make_unique<Counter>(&sum));
    listeners.back()->JoinAtEnd(&notifier);
  }
  int data = 1;
  for (auto _ : state) notifier.Notify(kCode, &data);
  CheckSum(state, sum);
}

long hookSum = 0;
int AddToHookSum(int code, int *) {
  hookSum += code;
  return 0;
}

void TovikHooks(benchmark::State &state) {
  hookSum = 0;
  SCC_Notifier notifier;
  std::vector<std::unique_ptr<SCC_EventHook<int>>> hooks;
  for (int i = 0; i < state.range(0); ++i) {
    hooks.push_back(std::make_unique<SCC_EventHook<int>>(AddToHookSum));
    hooks.back()->AddHook(&notifier);
  }
  int data = 1;
  for (auto _ : state) notifier.Notify(kCode, &data);
  CheckSum(state, hookSum);
}

void StdFunctionLoop(benchmark::State &state) {
  long sum = 0;
  std::vector<std::function<void(int, int *)>> slots;
  for (int i = 0; i < state.range(0); ++i) slots.emplace_back([&sum](int code, int *) { sum += code; });
  int data = 1;
  for (auto _ : state) {
    for (auto &slot : slots) slot(kCode, &data);
    benchmark::ClobberMemory();
  }
  CheckSum(state, sum);
}

#if TOVIK_HAVE_BOOST
void BoostSignals2(benchmark::State &state) {
  long sum = 0;
  boost::signals2::signal<void(int, int *)> signal;
  for (int i = 0; i < state.range(0); ++i) signal.connect([&sum](int code, int *) { sum += code; });
  int data = 1;
  for (auto _ : state) signal(kCode, &data);
  CheckSum(state, sum);
}
BENCHMARK(BoostSignals2)->Arg(1)->Arg(10)->Arg(1000);
#endif

#if TOVIK_HAVE_SIGCXX
void Sigcxx(benchmark::State &state) {
  long sum = 0;
  sigc::signal<void(int, int *)> signal;
  for (int i = 0; i < state.range(0); ++i) signal.connect([&sum](int code, int *) { sum += code; });
  int data = 1;
  for (auto _ : state) signal.emit(kCode, &data);
  CheckSum(state, sum);
}
BENCHMARK(Sigcxx)->Arg(1)->Arg(10)->Arg(1000);
#endif

BENCHMARK(TovikNodes)->Arg(1)->Arg(10)->Arg(1000);
BENCHMARK(TovikHooks)->Arg(1)->Arg(10)->Arg(1000);
BENCHMARK(StdFunctionLoop)->Arg(1)->Arg(10)->Arg(1000);

}  // namespace

BENCHMARK_MAIN();
