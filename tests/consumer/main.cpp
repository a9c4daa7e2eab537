// Links against an installed Tovik and calls one piece of each foundation layer.
#include <tovik.h>

#include <cstdio>

namespace {
int heard = 0;
int Count(int, int *) { return ++heard; }
}  // namespace

int main() {
  SYS_String text("R10");
  text << 5;
  SCC_Notifier notifier(0);
  SCC_EventHook<int> hook;
  hook.function = Count;
  hook.AddHook(&notifier);
  notifier.Notify(EvChanged, nullptr);
  int const result = SSM_AssertFailed("consumer check", __FILE__, __LINE__, SSM_FailureNotice, 0);
  SFM_File missing("/nonexistent/tovik-consumer.txt");  // reaches the file manager
  std::printf("%s heard=%d assert=%d\n", static_cast<char const *>(text), heard, result);
  return (text == "R105" && heard == 1 && result == 0 && missing.Open("r") == 0) ? 0 : 1;
}
