#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "scc_event.h"

namespace {

// A listener that writes its name into a shared log and then runs an action.
class Listener : public SCC_EventNode<int> {
 public:
  Listener(char n, std::string *l) : name(n), log(l) {}

  int OnNotification(int code, int *data) override {
    log->push_back(name);
    lastCode = code;
    lastData = data;
    if (action) action();
    return 7;
  }
  void OnEventEnable(int on) override { enableCalls.push_back(on); }

  char name;
  std::string *log;
  std::function<void()> action;
  int lastCode = 0;
  int *lastData = nullptr;
  std::vector<int> enableCalls;
};

// A hook whose priority orders it, logging like Listener.
class LoggingHook : public SCC_EventHook<int> {
 public:
  LoggingHook(char n, int prio, std::string *l) : name(n), log(l) { priority = prio; }
  int OnNotification(int, int *) override {
    log->push_back(name);
    if (action) action();
    return 0;
  }
  char name;
  std::string *log;
  std::function<void()> action;
};

int WalkCount(SCC_Event<int> const &event) {
  int count = 0;
  for (SCC_EventIterator<int> *walk = event.walks; walk != nullptr; walk = walk->outer) ++count;
  return count;
}

// The names of the listeners in ring order, checking every back link and owner.
std::string RingOf(SCC_Notifier const &notifier) {
  std::string names;
  SCC_EventNode<int> const *node = notifier.next;
  SCC_EventNode<int> const *before = &notifier;
  while (node != &notifier) {
    EXPECT_EQ(node->prev, before) << "broken back link";
    EXPECT_EQ(node->GetOwner(), &notifier) << "wrong owner";
    if (auto const *listener = dynamic_cast<Listener const *>(node))
      names.push_back(listener->name);
    else if (auto const *hook = dynamic_cast<LoggingHook const *>(node))
      names.push_back(hook->name);
    else
      names.push_back('?');
    before = node;
    node = node->next;
  }
  EXPECT_EQ(notifier.prev, before) << "broken back link to the notifier";
  return names;
}

void ExpectAlone(SCC_EventNode<int> const &node) {
  EXPECT_EQ(node.GetOwner(), nullptr);
  EXPECT_EQ(node.prev, &node);
  EXPECT_EQ(node.next, &node);
}

class EventRing : public ::testing::Test {
 protected:
  EventRing() : a('A', &log), b('B', &log), c('C', &log) {
    a.JoinAtEnd(&notifier);
    b.JoinAtEnd(&notifier);
    c.JoinAtEnd(&notifier);
  }
  std::string Notify() {
    log.clear();
    notifier.Notify(EvChanged, nullptr);
    EXPECT_EQ(notifier.walks, nullptr);
    return log;
  }

  std::string log;
  SCC_Notifier notifier;
  Listener a, b, c;
};

TEST(Event, EmptyRingAndDisabledSource) {
  SCC_Notifier notifier;
  EXPECT_EQ(notifier.HasListeners(), 0);
  EXPECT_EQ(notifier.next, &notifier);
  EXPECT_EQ(notifier.GetNotifier(), &notifier);
  notifier.Notify(EvReload, nullptr);
  EXPECT_EQ(notifier.walks, nullptr);

  std::string log;
  Listener a('A', &log);
  a.JoinAtEnd(&notifier);
  EXPECT_EQ(notifier.HasListeners(), 1);
  notifier.enabled = 0;
  notifier.Notify(EvReload, nullptr);
  EXPECT_EQ(log, "");
  notifier.enabled = 1;
  int value = 42;
  notifier.Notify(EvDeleted, &value);
  EXPECT_EQ(log, "A");
  EXPECT_EQ(a.lastCode, EvDeleted);
  EXPECT_EQ(a.lastData, &value);

  a.JoinAtEnd(nullptr);
  ExpectAlone(a);
  EXPECT_EQ(notifier.HasListeners(), 0);
  EXPECT_EQ(SCC_Notifier::GetMassNotificationTreshold(), 10);
}

TEST_F(EventRing, OrderAndJoining) {
  EXPECT_EQ(RingOf(notifier), "ABC");
  EXPECT_EQ(Notify(), "ABC");
  // Joining again moves a node to the end; it is never in the ring twice.
  a.JoinAtEnd(&notifier);
  EXPECT_EQ(RingOf(notifier), "BCA");
  SCC_Notifier other;
  b.JoinAtEnd(&other);
  EXPECT_EQ(RingOf(notifier), "CA");
  EXPECT_EQ(RingOf(other), "B");
  {
    Listener d('D', &log);
    d.JoinAtEnd(&notifier);
    EXPECT_EQ(RingOf(notifier), "CAD");
  }
  EXPECT_EQ(RingOf(notifier), "CA");
}

TEST_F(EventRing, ListenerLeavesFromItsOwnHandler) {
  b.action = [this] { b.Leave(); };
  EXPECT_EQ(Notify(), "ABC");
  ExpectAlone(b);
  EXPECT_EQ(Notify(), "AC");
}

TEST_F(EventRing, ListenerDestroyedFromItsOwnHandler) {
  auto *d = new Listener('D', &log);
  d->JoinAtEnd(&notifier);
  c.JoinAtEnd(&notifier);  // A B D C
  d->action = [d] { delete d; };
  EXPECT_EQ(Notify(), "ABDC");
  EXPECT_EQ(RingOf(notifier), "ABC");
}

TEST_F(EventRing, ListenerRemovesTheNextOrAnEarlierOne) {
  a.action = [this] { b.Leave(); };
  EXPECT_EQ(Notify(), "AC");
  a.action = nullptr;
  b.JoinAtEnd(&notifier);  // A C B
  b.action = [this] { a.Leave(); };
  EXPECT_EQ(Notify(), "ACB");
  EXPECT_EQ(Notify(), "CB");
  // The removed node had been visited; removing the current one's predecessor
  // and the current one together still ends in order.
  c.action = [this] {
    c.Leave();
    b.JoinAtEnd(&notifier);
  };
  EXPECT_EQ(Notify(), "CB");
}

TEST_F(EventRing, ListenerJoinsAtTheEndDuringAWalk) {
  Listener d('D', &log);
  c.action = [&] { d.JoinAtEnd(&notifier); };
  EXPECT_EQ(Notify(), "ABCD");
  // Re-joining the current node at the end visits it again, later.
  c.action = nullptr;
  int rounds = 0;
  a.action = [&] {
    if (rounds++ == 0) a.JoinAtEnd(&notifier);
  };
  EXPECT_EQ(Notify(), "ABCDA");
}

TEST(Event, HookJoinsByPriorityDuringAWalk) {
  std::string log;
  SCC_Notifier notifier;
  LoggingHook mid('M', 5, &log);
  LoggingHook low('L', 0, &log);
  mid.AddHook(&notifier);
  low.AddHook(&notifier);
  LoggingHook front('F', 10, &log);
  LoggingHook behind('b', 1, &log);
  mid.action = [&] {
    front.AddHook(&notifier);
    behind.AddHook(&notifier);
  };
  notifier.Notify(EvChanged, nullptr);
  EXPECT_EQ(log, "MbL");  // F landed in front of the current hook
  EXPECT_EQ(RingOf(notifier), "FMbL");
}

TEST(Event, PriorityOrder) {
  std::string log;
  SCC_Notifier notifier;
  LoggingHook first5('1', 5, &log), zero('0', 0, &log), second5('2', 5, &log);
  first5.AddHook(&notifier);
  zero.AddHook(&notifier);
  second5.AddHook(&notifier);
  EXPECT_EQ(RingOf(notifier), "210");

  // Plain nodes have the top priority: they stay in front of hooks.
  Listener plain('P', &log);
  plain.JoinAtEnd(&notifier);
  LoggingHook top('T', 0x7FFFFFFF, &log), negative('N', -3, &log);
  negative.AddHook(&notifier);
  top.AddHook(&notifier);
  EXPECT_EQ(RingOf(notifier), "T210PN");
  EXPECT_EQ(plain.GetPriority(), 0x7FFFFFFF);

  // Re-adding moves the hook; a null event only takes it out.
  zero.priority = 6;
  zero.AddHook(&notifier);
  EXPECT_EQ(RingOf(notifier), "T021PN");
  zero.AddHook(nullptr);
  ExpectAlone(zero);
  EXPECT_EQ(RingOf(notifier), "T21PN");
}

TEST_F(EventRing, NestedNotifyOnTheSameEvent) {
  int depth = 0;
  a.action = [&] {
    if (depth++ == 0) {
      EXPECT_EQ(WalkCount(notifier), 1);
      notifier.Notify(EvChanged, nullptr);
      EXPECT_EQ(WalkCount(notifier), 1);
    } else {
      EXPECT_EQ(WalkCount(notifier), 2);
    }
  };
  EXPECT_EQ(Notify(), "AABCBC");
}

TEST_F(EventRing, DisablingTheSourceOrAListener) {
  a.action = [this] { notifier.EnableEvent(0); };
  EXPECT_EQ(Notify(), "A");
  EXPECT_EQ(notifier.enabled, 0);
  notifier.EnableEvent(1);
  a.action = [this] { c.EnableEvent(0); };
  EXPECT_EQ(Notify(), "AB");
  EXPECT_EQ(c.enableCalls, std::vector<int>{0});
  // Disabling a listener the walk has passed changes nothing for the walk.
  a.action = nullptr;
  c.EnableEvent(1);
  c.action = [this] { a.EnableEvent(0); };
  EXPECT_EQ(Notify(), "ABC");
  EXPECT_EQ(Notify(), "BC");
}

TEST(Event, EnableEventCallsOnlyOnChange) {
  std::string log;
  Listener a('A', &log);
  a.EnableEvent(1);
  EXPECT_TRUE(a.enableCalls.empty());
  a.EnableEvent(0);
  a.EnableEvent(0);
  EXPECT_EQ(a.enableCalls, std::vector<int>{0});
  a.EnableEvent(1);
  a.EnableEvent(2);  // any other value is a change
  EXPECT_EQ(a.enableCalls, (std::vector<int>{0, 1, 2}));
  EXPECT_EQ(a.enabled, 2);
}

TEST_F(EventRing, ThrowingListenerLeavesTheChainSound) {
  b.action = [] { throw std::runtime_error("listener"); };
  EXPECT_THROW(notifier.Notify(EvChanged, nullptr), std::runtime_error);
  EXPECT_EQ(notifier.walks, nullptr);
  EXPECT_EQ(log, "AB");

  // Thrown from a nested walk and caught in the outer one: the outer walk is
  // still registered, repairs on removal and goes on.
  bool nested = false;
  a.action = [&] {
    if (nested) return;
    nested = true;
    EXPECT_THROW(notifier.Notify(EvChanged, nullptr), std::runtime_error);
    nested = false;
    EXPECT_EQ(WalkCount(notifier), 1);
    a.Leave();
  };
  b.action = [&] {
    if (nested) throw std::runtime_error("nested");
  };
  EXPECT_EQ(Notify(), "AABBC");
  b.action = nullptr;
  EXPECT_EQ(Notify(), "BC");
}

TEST_F(EventRing, ListenerDestroyedInANestedWalkWhileTheOuterStandsOnIt) {
  auto *d = new Listener('D', &log);
  Listener e('E', &log);
  d->JoinAtEnd(&notifier);
  e.JoinAtEnd(&notifier);
  c.JoinAtEnd(&notifier);  // A B D E C
  // E leaves, so the outer walk stands on D; the nested walk destroys D.
  bool nested = false;
  e.action = [&] {
    e.Leave();
    nested = true;
    notifier.Notify(EvChanged, nullptr);
    nested = false;
  };
  b.action = [&] {
    if (!nested) return;
    EXPECT_EQ(notifier.walks->outer->current, d);
    delete d;
  };
  EXPECT_EQ(Notify(), "ABDEABCC");
  EXPECT_EQ(RingOf(notifier), "ABC");
}

TEST(Event, DestroyedNotifierSendsItsListenersAway) {
  std::string log;
  Listener a('A', &log), b('B', &log);
  auto notifier = std::make_unique<SCC_Notifier>();
  a.JoinAtEnd(notifier.get());
  b.JoinAtEnd(notifier.get());
  b.EnableEvent(0);
  notifier.reset();
  ExpectAlone(a);
  ExpectAlone(b);
  EXPECT_EQ(a.enabled, 1);
  EXPECT_EQ(b.enabled, 0);  // the flag is the listener's own
  EXPECT_TRUE(a.enableCalls.empty());
  EXPECT_EQ(b.enableCalls, std::vector<int>{0});

  SCC_Notifier other;
  b.EnableEvent(1);
  a.JoinAtEnd(&other);
  b.JoinAtEnd(&other);
  other.Notify(EvAdded, nullptr);
  EXPECT_EQ(log, "AB");
}

TEST_F(EventRing, NotifierDestroyedInsideItsOwnWalkEndsTheWalks) {
  auto *source = new SCC_Notifier;
  a.JoinAtEnd(source);
  b.JoinAtEnd(source);
  c.JoinAtEnd(source);
  bool nested = false;
  a.action = [&] {
    if (nested) return;
    nested = true;
    source->Notify(EvChanged, nullptr);
  };
  b.action = [&] {
    if (nested) delete source;
  };
  source->Notify(EvChanged, nullptr);
  EXPECT_EQ(log, "AAB");
  ExpectAlone(a);
  ExpectAlone(c);
}

TEST_F(EventRing, CopyTakesOverTheRing) {
  SCC_Notifier copy(notifier);
  EXPECT_EQ(notifier.HasListeners(), 0);
  EXPECT_EQ(notifier.next, &notifier);
  EXPECT_EQ(notifier.prev, &notifier);
  EXPECT_EQ(RingOf(copy), "ABC");
  EXPECT_EQ(Notify(), "");
  copy.Notify(EvChanged, nullptr);
  EXPECT_EQ(log, "ABC");

  // A copy of an empty notifier is empty and leaves the source alone.
  SCC_Notifier empty;
  SCC_Notifier copyOfEmpty(empty);
  EXPECT_EQ(copyOfEmpty.HasListeners(), 0);
  EXPECT_EQ(copyOfEmpty.next, &copyOfEmpty);
}

TEST_F(EventRing, AssignmentSendsOwnListenersAwayAndTakesOver) {
  std::string otherLog;
  SCC_Notifier other;
  Listener x('X', &otherLog), y('Y', &otherLog);
  x.JoinAtEnd(&other);
  y.JoinAtEnd(&other);

  SCC_Notifier &alias = other;
  SCC_Notifier &result = (other = alias);
  EXPECT_EQ(&result, &other);
  EXPECT_EQ(RingOf(other), "XY");

  other = notifier;
  ExpectAlone(x);
  ExpectAlone(y);
  EXPECT_EQ(notifier.HasListeners(), 0);
  EXPECT_EQ(RingOf(other), "ABC");
  other.Notify(EvChanged, nullptr);
  EXPECT_EQ(log, "ABC");
  EXPECT_EQ(otherLog, "");
}

TEST_F(EventRing, CopyDuringAWalkMovesTheWalk) {
  Listener d('D', &log);
  d.JoinAtEnd(&notifier);  // A B C D
  std::unique_ptr<SCC_Notifier> copy;
  int calls = 0;
  a.action = [&] {
    if (!copy) {
      copy = std::make_unique<SCC_Notifier>(notifier);
      EXPECT_EQ(notifier.walks, nullptr);
      EXPECT_EQ(WalkCount(*copy), 1);
      EXPECT_EQ(copy->walks->event, copy.get());
      a.Leave();  // repaired through the copy
    } else if (++calls > 3) {
      notifier.enabled = copy->enabled = 0;  // a broken walk must still end
    }
  };
  int depth = 0;
  b.action = [&] {
    if (depth++ == 0) copy->Notify(EvChanged, nullptr);
  };
  d.action = [&] { copy->enabled = 0; };  // read by both walks
  EXPECT_EQ(Notify(), "ABBCD");
  EXPECT_EQ(copy->walks, nullptr);
  EXPECT_EQ(RingOf(*copy), "BCD");
}

TEST_F(EventRing, CopyTakesOverAWalkStandingOnTheSource) {
  std::unique_ptr<SCC_Notifier> copy;
  a.action = [this] { a.Leave(); };
  b.action = [&] {
    b.Leave();
    EXPECT_EQ(notifier.walks->current, &notifier);
    copy = std::make_unique<SCC_Notifier>(notifier);
  };
  EXPECT_EQ(Notify(), "ABC");
  EXPECT_EQ(RingOf(*copy), "C");

  // Assigned inside a walk on itself: its own walk ends quietly.
  SCC_Notifier other;
  Listener x('X', &log), y('Y', &log);
  x.JoinAtEnd(&other);
  y.JoinAtEnd(&other);
  x.action = [&] { other = *copy; };
  log.clear();
  other.Notify(EvChanged, nullptr);
  EXPECT_EQ(log, "X");
  EXPECT_EQ(other.walks, nullptr);
  EXPECT_EQ(RingOf(other), "C");
  ExpectAlone(x);
  ExpectAlone(y);
}

int Sum(int code, int *data) { return code + *data; }

class Counter {
 public:
  int Add(int code, int *data) {
    total += code * *data;
    return total;
  }
  int total = 0;
};

TEST(Event, HooksCallTheirFunctions) {
  SCC_Notifier notifier;
  SCC_EventHook<int> plain(Sum, 3);
  Counter counter;
  SCC_ObjectEventHook<Counter, int> method(&counter, &Counter::Add, 4);
  plain.AddHook(&notifier);
  method.AddHook(&notifier);
  EXPECT_EQ(notifier.next, &method);
  EXPECT_TRUE(method.function == nullptr);
  int value = 5;
  EXPECT_EQ(plain.OnNotification(2, &value), 7);
  notifier.Notify(EvFocused, &value);
  notifier.Notify(EvFocused, &value);
  EXPECT_EQ(counter.total, 2 * EvFocused * 5);

  // A copied hook keeps its function and priority but is alone.
  SCC_EventHook<int> copy(plain);
  ExpectAlone(copy);
  EXPECT_EQ(copy.priority, 3);
  EXPECT_TRUE(copy.function == &Sum);
  // Assigning one hook to another keeps the target's place in its ring.
  SCC_EventHook<int> target;
  target.AddHook(&notifier);
  target = copy;
  EXPECT_EQ(target.GetOwner(), &notifier);
  EXPECT_EQ(target.GetPriority(), 3);
}

}  // namespace
