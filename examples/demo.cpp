// A tour of Tovik as an application sees it: strings, a failed check that
// reaches the application's handler, and a notifier whose listeners leave in
// the middle of a notification.
#include <tovik.h>

#include <cstdio>

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

}  // namespace

int main() {
  ShowStrings();
  ShowChecks();
  ShowNotification();
  return 0;
}
