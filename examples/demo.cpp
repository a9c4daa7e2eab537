// A tour of Tovik as an application sees it: strings, a failed check that
// reaches the application's handler, a notifier whose listeners leave in
// the middle of a notification, and collections that follow their source and
// each other.
#include <tovik.h>

#include <cstdio>

#include "object_store.h"  // a small object store, shared with the tests

namespace {

void Section(char const *title) { std::printf("\n== %s\n", title); }

// --- Strings ---------------------------------------------------------------

void ShowStrings() {
  Section("Strings");
  SYS_String name("  C12 decoupling  ");
  name.AllTrim("");
  std::printf("trimmed: \"%s\" (%d bytes)\n", static_cast<char const *>(name), name.GetLength());

  SYS_String copy = name;  // shares the array until one of them is written
  copy.Replace(0, 3, "C7");
  std::printf("copy edited: \"%s\", original kept: \"%s\"\n", static_cast<char const *>(copy),
              static_cast<char const *>(name));

  SYS_String line;
  line << "R" << 10 << " = " << 4.7 << " kOhm";
  std::printf("built: \"%s\"\n", static_cast<char const *>(line));

  char const *refs[] = {"R10", "R2", "R1", "C3", "R007"};
  std::printf("R2 vs R10: %d, R007 vs R7: %d\n", _tcsnumcmp("R2", "R10"), _tcsnumcmp("R007", "R7"));
  for (char const *ref : refs) {
    std::printf("  %-4s matches \"R?\": %d, \"R[0-9]*\": %d\n", ref, SYS_String(ref).Match("R?"),
                SYS_String(ref).Match("R[0-9]*"));
  }
}

// --- A failed check --------------------------------------------------------

int Divide(int a, int b) {
  SSM_ASSERT(b != 0, "Demo: division by zero", SSM_FailureError, 0);
  return b == 0 ? 0 : a / b;
}

void ShowChecks() {
  Section("Checks");
  std::printf("with no manager a failed check passes through: Divide(7, 0) = %d\n", Divide(7, 0));
  try {
    throw SYS_Exception("Invalid number \"%s\"", "12x");
  } catch (SYS_Exception const &e) {
    std::printf("caught SYS_Exception: %s\n", static_cast<char const *>(e.GetText()));
  }
}

// --- Notification ----------------------------------------------------------

// A listener that leaves the ring after it has heard a number of notifications.
class Watcher : public SCC_EventNode<int> {
 public:
  Watcher(char const *n, int lifetime) : name(n), remaining(lifetime) {}

  int OnNotification(int code, int *data) override {
    std::printf("  %s hears code %d, handle %ld\n", name, code,
                static_cast<long>(SCC_DataToHandle(data)));
    if (--remaining == 0) {
      std::printf("  %s leaves during the walk\n", name);
      Leave();
    }
    return 1;
  }

 private:
  char const *name;
  int remaining;
};

void ShowNotification() {
  Section("Notification");
  SCC_Notifier board;
  Watcher a("A", 1), b("B", 2), c("C", 3);
  a.JoinAtEnd(&board);
  b.JoinAtEnd(&board);
  c.JoinAtEnd(&board);
  for (SCC_Handle part = 1; part <= 3; ++part) {
    std::printf("part %ld changed:\n", static_cast<long>(part));
    board.Notify(EvChanged, SCC_HandleToData(part));
  }
  std::printf("listeners left: %d\n", board.HasListeners());
}

// --- Observable collections ----------------------------------------------

// Parts in a store, a view of them sorted by value, and a view of the pins of
// the selected parts that follows the selection.
class PrintChanges : public SCC_EventNode<int> {
 public:
  explicit PrintChanges(char const *n) : name(n) {}
  int OnNotification(int code, int *data) override {
    SCC_Handle const handle = SCC_DataToHandle(data);
    bool const names = code >= EvAdded && code <= EvFocused;
    std::printf("  %s hears code %d about %d\n", name, code,
                names ? tovik_test::StoreCollection::IdOf(handle) : 0);
    return 0;
  }

 private:
  char const *name;
};

void PrintList(char const *title, tovik_test::StoreCollection &view) {
  std::printf("%s:", title);
  for (int id : view.Ids()) std::printf(" %d", id);
  std::printf("\n");
}

SCC_Handle H(tovik_test::ObjectStore &store, int id) { return store.Find(id)->Handle(); }

void ShowCollections() {
  Section("Observable collections");
  tovik_test::ObjectStore parts;
  tovik_test::ObjectStore pins;
  int const values[] = {470, 100, 220, 100, 330};
  for (int id = 1; id <= 5; ++id) {
    tovik_test::StoreObject &part = parts.Add(id, values[id - 1]);
    for (int pin = 1; pin <= 2; ++pin) pins.Add(10 * id + pin, pin, false, &part);
  }
  tovik_test::StoreCollection byValue(parts);
  PrintChanges partsHeard("parts view");
  byValue.SetNotificationHandler(&partsHeard);
  byValue.SetSort(&tovik_test::ObjectStore::CompareKey, 0);
  byValue.AllowReload(1);
  PrintList("parts by value (equal values keep the store's order)", byValue);

  tovik_test::ChildCollection selectedPins(pins, byValue);
  selectedPins.SetSort(&tovik_test::ObjectStore::CompareKey, 0);
  selectedPins.AllowReload(1);
  byValue.SetFocus(H(parts, 3), 1);
  byValue.SetFocus(H(parts, 5), 1);
  PrintList("pins of the selected parts 3 and 5", selectedPins);

  std::printf("part 3 changes its value to 500:\n");
  parts.SetKey(*parts.Find(3), 500);
  PrintList("parts by value", byValue);
  std::printf("part 3 still selected: %d\n", byValue.IsInFocus(H(parts, 3), nullptr) ? 1 : 0);
}

}  // namespace

int main() {
  ShowStrings();
  ShowChecks();
  ShowNotification();
  ShowCollections();
  return 0;
}
