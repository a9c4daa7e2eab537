// The failure manager: a failed check from its record to its end.
#include <cstdint>

#include "ssm.h"

template class _SCC_Buffer<SSM::AssertData *>;
template class SCC_Array<SSM::AssertData *>;
template class SCC_Stack<SSM::AssertData *>;
template class SCC_Map<SYS_String, SSM::AssertData>;
template class SCC_MapIterator<SYS_String, SSM::AssertData>;

SSM::SSM() : depth(-1), fatalData(nullptr), silentMode(0) {
  Instance = this;
  ++InstanceCount;
}

SSM::SSM(SSM &other)
    : depth(other.depth),
      actionEvent(other.actionEvent),
      failureEvent(other.failureEvent),
      logEvent(other.logEvent),
      fatalData(nullptr),
      asserts(other.asserts),
      activeAsserts(other.activeAsserts),
      silentMode(other.silentMode) {
  AdoptPointers(other);
}

SSM &SSM::operator=(SSM &other) {
  if (&other == this) return *this;
  depth = other.depth;
  actionEvent = other.actionEvent;
  failureEvent = other.failureEvent;
  logEvent = other.logEvent;
  asserts = other.asserts;
  activeAsserts = other.activeAsserts;
  silentMode = other.silentMode;
  AdoptPointers(other);
  return *this;
}

SSM::~SSM() {
  Instance = nullptr;
  --InstanceCount;
}

int SSM::GetSilentMode() { return Instance != nullptr ? Instance->silentMode : 0; }

void SSM::SetSilentMode(int silent) {
  if (Instance != nullptr) Instance->silentMode = silent;
}

SYS_String SSM::KeyOf(char const *file, std::int32_t line) {
  SYS_String key;
  key.Format("%s(%lu)", file != nullptr ? file : "",
             static_cast<unsigned long>(static_cast<std::uint32_t>(line)));
  return key;
}

SSM::AssertData *SSM::OwnRecord(AssertData const *record) {
  return record != nullptr ? asserts.Find(KeyOf(record->fileName, record->lineNo)) : nullptr;
}

void SSM::AdoptPointers(SSM &other) {
  // The records were copied deeply; what pointed at other's records must now
  // point at this manager's, or a copy would act on, and throw, records that
  // die with other.
  fatalData = OwnRecord(other.fatalData);
  for (std::int32_t k = 0; k < activeAsserts.GetStackSize(); ++k) {
    activeAsserts[k] = OwnRecord(activeAsserts.GetAt(k));
  }
  AssertData *const current = OwnRecord(other.currentAssert.Record());
  if (current != nullptr) {
    currentAssert.Seek(asserts, KeyOf(current->fileName, current->lineNo), current);
  } else {
    currentAssert.Invalidate();
  }
}

int SSM::AssertFailed(char const *msg, char const *file, int line, SSM_FailureType type, int id) {
  ++depth;
  int result = 1;
  bool throwing = false;
  fatalData = nullptr;

  if (msg == nullptr) msg = "";
  if (file == nullptr) file = "";
  // Only the position makes the key: the text and the type do not.
  SYS_String const key = KeyOf(file, line);
  AssertData *record = asserts.Find(key);
  if (record == nullptr) {
    AssertData candidate;
    candidate.fileName = file;
    candidate.msg = msg;
    candidate.lineNo = line;
    candidate.id = id;
    asserts.Insert(key, candidate);
    record = asserts.Find(key);
  }

  // A position failing again while its own failure is handled passes
  // straight through: nothing is counted, told or thrown.
  bool active = record == nullptr;
  AssertData *const *const stack = activeAsserts.GetData();
  for (std::int32_t k = activeAsserts.GetStackSize() - 1; k >= 0 && !active; --k) {
    active = stack[k] == record;
  }

  if (!active) {
    activeAsserts.Push(record);
    currentAssert.Seek(asserts, key, record);
    ++record->count;
    record->action = ActionContinue;
    record->msg = msg;

    // From the decision on, every step works through currentAssert: a nested
    // failure that returned leaves it on its own record until the pop below.
    if (type == SSM_FailureAssert) {
      throwing = true;
    } else if (silentMode == 0 && record->enabled != 0) {
      // The floor: a nested failure of any type but a notice returns failure
      // at least. Listeners can only raise it.
      record->action =
          depth > 0 && type != SSM_FailureNotice ? ActionReturnFailure : ActionContinue;
      actionEvent.Notify(type, record);
      AssertData *const decided = currentAssert.Record();
      switch (decided != nullptr ? static_cast<int>(decided->action) : 0) {
        case ActionContinue:
          break;
        case ActionReturnFailure:
          result = 0;
          break;
        case ActionThrow:
          throwing = true;
          break;
        case ActionThrowFatal:
          throwing = true;
          fatalData = decided;
          break;
        default:
          SSM_CHECK(false, "Assert handler encountered invalid action code.");
          break;
      }
    }

    failureEvent.Notify(type, SCC_HandleToData(currentAssert.GetHandle()));
    AssertData *now = currentAssert.Record();
    if (now != nullptr && now->logRequired != 0 && now->enabled != 0) {
      logEvent.Notify(type, SCC_HandleToData(currentAssert.GetHandle()));
      now = currentAssert.Record();
    }

    if (now != nullptr) now->action = ActionContinue;
    if (activeAsserts.GetStackSize() > 0) {
      AssertData *const popped = activeAsserts.Pop();
      if (popped == record) {
        currentAssert.Seek(asserts, key, record);
      } else if (popped != nullptr) {
        currentAssert.Seek(asserts, KeyOf(popped->fileName, popped->lineNo), popped);
      } else {
        currentAssert.Invalidate();
      }
    }
  }

  --depth;
  if (throwing) Throw();
  return result;
}

void SSM::Throw() {
  if (fatalData != nullptr) throw FatalException(fatalData);
  if (AssertData *const record = currentAssert.Record()) throw record;
}
