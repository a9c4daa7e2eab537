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
  SFM::GetManager()->Initiate(CONSUMER_MESSAGES);
  SYS_String const error = SFM::GetManager()->GetMessageDB()->getTxt(4);  // [errors] 1: its base is 3
  std::printf("%s heard=%d assert=%d message=\"%s\"\n", static_cast<char const *>(text), heard,
              result, static_cast<char const *>(error));
  return (text == "R105" && heard == 1 && result == 0 && error == "Cannot open %s") ? 0 : 1;
}
