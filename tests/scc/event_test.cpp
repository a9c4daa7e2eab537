#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "scc_event.h"

namespace {

// A node that writes its name into a shared log, then runs an action.
class Listener : public SCC_EventNode<int> {
 public:
  Listener(char n, std::string *l) : name(n), log(l) {}
  int OnNotification(int, int *) override {
    log->push_back(name);
    // A walk that never ends fails the test instead of hanging it.
    if (log->size() > 64) throw std::runtime_error("runaway walk");
    if (action) action();
    return 0;
  }
  void OnEventEnable(int on) override { enableCalls.push_back(on); }

  char name;
  std::string *log;
  std::function<void()> action;
  std::vector<int> enableCalls;
};

// The names of the nodes in ring order, checking every back link and owner.
std::string RingOf(SCC_Notifier const &notifier) {
  std::string names;
  for (SCC_EventNode<int> const *node = notifier.next; node != &notifier; node = node->next) {
    EXPECT_EQ(node->next->prev, node) << "broken back link";
    EXPECT_EQ(node->GetOwner(), &notifier) << "wrong owner";
    names.push_back(static_cast<Listener const *>(node)->name);
  }
  EXPECT_EQ(notifier.next->prev, &notifier) << "broken back link to the notifier";
  return names;
}

void ExpectAlone(SCC_EventNode<int> const &node) {
  EXPECT_TRUE(node.GetOwner() == nullptr && node.prev == &node && node.next == &node);
}

// A notifier with listeners A, B, C and a spare D.
struct Ring {
  Ring() : a('A', &log), b('B', &log), c('C', &log), d('D', &log) {
    for (Listener *l : {&a, &b, &c}) l->JoinAtEnd(&notifier);
  }
  // One walk: the names it called, and '!' when it ended by an exception.
  std::string Notify() {
    log.clear();
    try {
      notifier.Notify(EvChanged, nullptr);
    } catch (std::runtime_error const &) {
      log += '!';
    }
    EXPECT_EQ(notifier.walks, nullptr);
    return log;
  }
  std::string log;
  SCC_Notifier notifier;
  Listener a, b, c, d;
};

TEST(Event, ReentrantWalks) {
  struct {
    char const *name;
    std::function<void(Ring &)> arrange;
    char const *first, *second;  // what two walks call
  } const cases[] = {
      {"B leaves from its own handler", [](Ring &r) { r.b.action = [&r] { r.b.Leave(); }; }, "ABC", "AC"},
      {"A removes the next one", [](Ring &r) { r.a.action = [&r] { r.b.Leave(); }; }, "AC", "AC"},
      {"A moves itself to the end once",
       [](Ring &r) { r.a.action = [&r] { if (r.log == "A") r.a.JoinAtEnd(&r.notifier); }; }, "ABCA", "BCA"},
      {"A notifies again once",
       [](Ring &r) { r.a.action = [&r] { if (r.log == "A") r.notifier.Notify(EvChanged, nullptr); }; }, "AABCBC",
       "AABCBC"},
      {"A disables the source", [](Ring &r) { r.a.action = [&r] { r.notifier.EnableEvent(0); }; }, "A", ""},
      {"C disables A, already called", [](Ring &r) { r.c.action = [&r] { r.a.EnableEvent(0); }; }, "ABC", "BC"},
      {"B throws", [](Ring &r) { r.b.action = [] { throw std::runtime_error("B"); }; }, "AB!", "AB!"},
      {"A catches a throw from a nested walk and leaves",
       [](Ring &r) {
         r.a.action = [&r] {
           if (r.log != "A") return;
           EXPECT_THROW(r.notifier.Notify(EvChanged, nullptr), std::runtime_error);
           r.a.Leave();  // the outer walk is still registered and repaired
         };
         r.b.action = [&r] { if (r.log == "AAB") throw std::runtime_error("B"); };
       },
       "AABBC", "BC"},
      {"D destroys itself between B and C",
       [](Ring &r) {
         auto *d = new Listener('D', &r.log);
         d->JoinAtEnd(&r.notifier);
         r.c.JoinAtEnd(&r.notifier);
         d->action = [d] { delete d; };
       },
       "ABDC", "ABC"},
      {"a nested walk destroys the node on which the outer walk stands",
       [](Ring &r) {
         auto *x = new Listener('X', &r.log);
         x->JoinAtEnd(&r.notifier);
         r.d.JoinAtEnd(&r.notifier);
         r.c.JoinAtEnd(&r.notifier);  // A B X D C
         r.d.action = [&r] {
           r.d.Leave();  // the outer walk now stands on X
           r.notifier.Notify(EvChanged, nullptr);
         };
         r.b.action = [&r, x] { if (r.log == "ABXDAB") delete x; };
       },
       "ABXDABCC", "ABC"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    Ring r;
    c.arrange(r);
    EXPECT_EQ(r.Notify(), c.first);
    EXPECT_EQ(r.Notify(), c.second);
  }
}

TEST(Event, DestroyedNotifierSendsItsListenersAway) {
  Ring r;
  auto source = std::make_unique<SCC_Notifier>();
  for (Listener *l : {&r.a, &r.b, &r.c}) l->JoinAtEnd(source.get());
  for (int on : {1, 0, 0, 2, 0}) r.b.EnableEvent(on);  // told only of changes
  // Destroyed inside a nested walk of its own: both walks end quietly.
  r.a.action = [&] {
    if (r.log == "A") source->Notify(EvChanged, nullptr);
  };
  r.c.action = [&] { source.reset(); };
  source->Notify(EvChanged, nullptr);
  EXPECT_EQ(r.log, "AAC");
  for (Listener *l : {&r.a, &r.b, &r.c}) ExpectAlone(*l);
  EXPECT_EQ(r.a.enabled + r.b.enabled, 1) << "the flags are the listeners' own";
  EXPECT_EQ(r.b.enableCalls, (std::vector<int>{0, 2, 0}));
}

// A copy takes the ring over, also inside a walk: removal repairs the walk
// through the copy, and a walk standing on the source itself goes on at the copy.
TEST(Event, CopiesAndAssignmentTakeOverTheRingAndItsWalks) {
  Ring r;
  SCC_Notifier copy(r.notifier);
  copy = static_cast<SCC_Notifier &>(copy);  // self-assignment changes nothing
  EXPECT_TRUE(r.notifier.HasListeners() == 0 && RingOf(copy) == "ABC");
  r.d.JoinAtEnd(&r.notifier);
  r.notifier = copy;  // sends its own listeners away
  ExpectAlone(r.d);
  EXPECT_EQ(copy.HasListeners(), 0);
  SCC_Notifier empty, copyOfEmpty(empty);
  EXPECT_EQ(copyOfEmpty.next, &copyOfEmpty);

  r.d.JoinAtEnd(&r.notifier);  // A B C D
  std::unique_ptr<SCC_Notifier> moved;
  r.a.action = [&] {
    if (moved) return;
    moved = std::make_unique<SCC_Notifier>(r.notifier);
    r.a.Leave();
  };
  r.b.action = [&] {
    if (r.log == "AB") moved->Notify(EvChanged, nullptr);
  };
  EXPECT_EQ(r.Notify(), "ABBCDCD");
  EXPECT_TRUE(moved->walks == nullptr && RingOf(*moved) == "BCD");
}

}  // namespace
