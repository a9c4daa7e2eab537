// A tour of Tovik as an application sees it: strings, failed checks and the
// failure manager that decides how they end, and a notifier whose listeners
// leave in the middle of a notification.
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

// --- The failure manager ---------------------------------------------------

// The application's log: one line per failure, read from the record.
int LogFailure(int type, int *data) {
  SSM::AssertObj record;
  record.SetHandle(SCC_DataToHandle(data), nullptr);
  std::printf("  log: %s(%d) type %d, failure #%d: %s\n",
              static_cast<char const *>(record.GetFileName()), record.GetLineNo(), type,
              record.GetCount(), static_cast<char const *>(record.GetMsg()));
  return 0;
}

// The application's policy for its own checks: a notice carries on, anything
// worse returns failure, so that the check throws from its own place.
int DecideAction(int type, int *data) {
  SSM::AssertObj record;
  record.SetHandle(SCC_DataToHandle(data), nullptr);
  record.SetAction(type == SSM_FailureNotice ? SSM::ActionContinue : SSM::ActionReturnFailure);
  return 0;
}

int TrackWidth(int requested) {
  SSM_ASSERT(requested >= 100, "Demo: track narrower than the process allows", SSM_FailureNotice,
             0);
  return requested < 100 ? 100 : requested;
}

void PlaceOnLayer(int layer) {
  SSM_ASSERT(layer >= 1 && layer <= 32, "Demo: no such copper layer", SSM_FailureError, 12);
  std::printf("  placed on layer %d\n", layer);
}

void ShowFailureManager() {
  Section("Failure manager");
  SSM manager;  // from now on every failed check reaches it
  SCC_EventHook<int> decide(DecideAction), log(LogFailure);
  decide.AddHook(&manager.actionEvent);
  log.AddHook(&manager.logEvent);

  SCC_Stack<int> undo;
  for (int round = 1; round <= 2; ++round) {
    std::printf("round %d\n", round);
    std::printf("  track width: %d\n", TrackWidth(40));  // carries on behind the check
    try {
      PlaceOnLayer(40);
    } catch (SSM::AssertData *record) {
      std::printf("  caught the record of \"%s\", id %d\n", static_cast<char const *>(record->msg),
                  record->id);
    }
    try {
      undo.Pop();  // a check inside the library: type 2 always throws
    } catch (SSM::AssertData *record) {
      std::printf("  caught a library check: \"%s\", seen %d time(s)\n",
                  static_cast<char const *>(record->msg), record->count);
    }
    if (round == 1) {
      // Enough of the notice: disable its record, so that it asks and logs no more.
      SSM::AssertObj notice;
      for (notice.GetFirst(); notice.IsValid(); notice.GetNext()) {
        if (notice.GetID() == 0 && notice.GetMsg().Find("track") >= 0) notice.Disable(1);
      }
    }
  }

  std::printf("registry:\n");
  SSM::AssertObj walk;
  for (walk.GetFirst(&manager); walk.IsValid(); walk.GetNext()) {
    std::printf("  %s(%d): %d failure(s)%s\n", static_cast<char const *>(walk.GetFileName()),
                walk.GetLineNo(), walk.GetCount(), walk.IsDisabled() ? ", disabled" : "");
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
  ShowFailureManager();
  ShowNotification();
  return 0;
}
