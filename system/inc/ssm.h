// SSM: the failure manager, and the registry of failed source positions.
//
// The application creates one SSM object; from then on every failed check
// (SSM_ASSERT, ssm_check.h) reaches SSM::AssertFailed. The manager keeps one
// record (SSM::AssertData) per source position that ever failed, counts each
// failure there, asks the application what is to happen through actionEvent,
// tells it of the failure through failureEvent and logEvent, and then returns
// to the check or throws. The library writes no log and ends no process: what
// a failure looks like to the user is up to the listeners and handlers of the
// application.
//
// A failure ends in one of four ways:
//   returns 1       the check carries on: type 0 or 1 when silent, disabled or
//                   left at ActionContinue; the same position failing inside
//                   its own handling; no record could be made
//   returns 0       action 1: the check calls SSM_Throw from its own place,
//                   which throws the record's SSM::AssertData *
//   throws inside   type 2, or action 2: an SSM::AssertData * (catchable as
//                   void * too)
//   throws inside   action 3: an SSM::FatalException holding the record
//
// Listeners of the three notifiers hear the failure type as the code and the
// record's handle (its address, see SCC_HandleToData) as the data. They read
// and steer the record through SSM::AssertObj; raising the action is done with
// SSM::AssertObj::SetAction, which never lowers it.
//
// Records live in the nodes of a hash map keyed by "<file>(<line>)", so their
// addresses stay good until the manager is destroyed; they are never removed
// one by one. One thread only; the manager is re-entrant on it: a listener may
// fail further checks, which are handled one level deeper.
#ifndef TOVIK_SSM_H
#define TOVIK_SSM_H

#include <cstdint>

#include "scc_array.h"
#include "scc_event.h"
#include "scc_map.h"
#include "ssm_check.h"
#include "sys_string.h"
#include "tovik_export.h"

class TOVIK_API SSM {
 public:
  // What happens after the application has been asked, by rising severity.
  // The record holds any int a listener stored; values other than these four
  // make the failure fail a check of its own.
  enum Action : int {
    ActionContinue = 0,       // AssertFailed returns 1
    ActionReturnFailure = 1,  // AssertFailed returns 0; the check calls SSM_Throw
    ActionThrow = 2,          // AssertFailed throws the record's pointer
    ActionThrowFatal = 3      // AssertFailed throws a FatalException
  };

  // The record of one source position. A plain struct, copied by members; a
  // default record is what the first failure of a position starts with.
  struct TOVIK_API AssertData {
    SYS_String fileName;             // source file name given by the check
    SYS_String msg;                  // text of the latest failure here
    SYS_String logMsg;               // text for logging; only SetLogMsg writes it
    std::int32_t lineNo = 0;         // source line
    std::int32_t count = 0;          // failures handled here
    int enabled = 1;                 // 0: disabled, asks nobody and logs nothing
    int logRequired = 1;             // 0: logEvent is not fired
    Action action = ActionContinue;  // the action of the failure in progress; 0 between failures
    std::int32_t id = 0;             // the number given by the first failure here
  };

  // All records, keyed by "<file>(<line>)": 53 buckets at first, unique keys,
  // the text hash. It adds nothing to the map but its type.
  class TOVIK_API AssertMap : public SCC_Map<SYS_String, AssertData> {
   public:
    AssertMap();
    AssertMap(AssertMap const &other);
    AssertMap &operator=(AssertMap const &other);
    ~AssertMap() override;
  };

  // A cursor over the records of a manager, and the way to read and steer one.
  // Its handle is the record's address; 0 is no record. It starts on nothing;
  // a copy stands on the same record and listens to nothing.
  //
  // The record operations work on the record the cursor stands on. On nothing
  // they read as empty (texts empty, numbers 0, not disabled, no log required)
  // and change nothing.
  class TOVIK_API AssertObj : public SCC_MapIterator<SYS_String, AssertData> {
   public:
    AssertObj();
    AssertObj(AssertObj const &other);
    // Unless assigned to itself: joins other's ring as SCC_Iterator does, then
    // stands on the first record of the bucket other is in, or of the next
    // non-empty one; that need not be other's record.
    AssertObj &operator=(AssertObj &other);
    ~AssertObj() override;

    // Stands on the first record of manager, null meaning the current
    // manager. With no manager at all the cursor stays where it was.
    void GetFirst(SSM *manager = nullptr);
    // Stands on data if the current manager holds that very record under its
    // file and line; otherwise on nothing. A record of another manager, or a
    // copy of a record, ends on nothing even with the same position. With no
    // manager the lookup is made in the map the cursor walks, if any.
    void SetHandle(AssertData *data);
    // The same with the handle as a pointer; the manager is ignored.
    void SetHandle(SCC_Handle handle, SSM *manager);

    // The current manager's actionEvent, which a collection of records
    // listens to; null with no manager (there is nothing to listen to then).
    static SCC_Notifier *GetChangeEvent(void *);
    // Orders handles as signed integers, so records by address: 1, -1 or 0.
    static int DefaultSort(SCC_Handle const &a, SCC_Handle const &b);
    // Nothing: records never move.
    void OnUpdatePointers(void *);

    SYS_String GetFileName() const;
    std::int32_t GetLineNo() const;
    std::int32_t GetID() const;
    std::int32_t GetCount() const;
    void IncreaseCount();
    SYS_String GetMsg() const;
    void SetMsg(SYS_String msg);
    SYS_String GetLogMsg() const;
    void SetLogMsg(SYS_String msg);
    // 1 if the record is disabled.
    int IsDisabled() const;
    // Non-zero disables the record, 0 enables it again.
    void Disable(int disable);
    int IsLogRequired() const;
    void SetLogRequired(int required);
    Action GetAction() const;
    // Stores the action only if it is above the present one: of several
    // listeners the most severe wins, and none goes below the floor.
    void SetAction(Action action);
    // The action becomes ActionContinue.
    void ClearAction();

   private:
    friend class SSM;
    // The record stood on, or null.
    AssertData *Record() const;
    // Stands on the node of map under key if it holds record; otherwise on
    // nothing. 1 when placed.
    int Seek(SCC_Map<SYS_String, AssertData> &in, SYS_String const &key, AssertData const *record);
  };

  // Thrown by value for ActionThrowFatal.
  class TOVIK_API FatalException {
   public:
    explicit FatalException(AssertData *record) : data(record) {}
    AssertData *data;  // the record of the failure
  };

  // The current manager, or null.
  static SSM *Instance;
  // Constructions minus destructions of manager objects; copies are not
  // counted in, but their destruction is counted out.
  static std::int32_t InstanceCount;

  // An idle manager with no records; it becomes the current manager, whatever
  // manager was current before.
  SSM();
  // Copies depth, fatalData, silent mode, the active positions and (deeply)
  // the records; each notifier takes other's listeners over. Pointers to
  // records (currentAssert, fatalData, the active stack) name the copy's own
  // records of the same positions. A copy is not made the current manager.
  SSM(SSM &other);
  // The same for an existing manager; nothing on self-assignment.
  SSM &operator=(SSM &other);
  // The records die with the manager. Any manager's destruction leaves no
  // current manager, and lowers InstanceCount.
  ~SSM();

  // The current manager, or null until the application creates one.
  static SSM *GetManager() { return Instance; }
  // The current manager's silent mode, or 0 with no manager.
  static int GetSilentMode();
  // Sets the current manager's silent mode; nothing with no manager. In silent
  // mode nobody is asked: types 0 and 1 carry on, type 2 still throws.
  static void SetSilentMode(int silent);

  // Handles one failure: 1 when the check is to carry on, 0 when it must now
  // call SSM_Throw. Throws by itself for type 2 and actions 2 and 3.
  int AssertFailed(char const *msg, char const *file, int line, SSM_FailureType type, int id);
  // Throws a FatalException if fatalData is set, else the pointer of the
  // record currentAssert stands on; returns if it stands on nothing.
  void Throw();

  // The manager's state, in this order. The application listens to the three
  // notifiers and may read the rest; only the manager writes it.
  std::int32_t depth;                     // -1 idle, 0 in an outermost failure, 1 nested...
  SCC_Notifier actionEvent;               // asks for the action
  SCC_Notifier failureEvent;              // tells of every handled failure
  SCC_Notifier logEvent;                  // asks for a log entry
  AssertObj currentAssert;                // the record in progress, or the latest one
  AssertData *fatalData;                  // the record for which action 3 was chosen
  AssertMap asserts;                      // all records
  SCC_Stack<AssertData *> activeAsserts;  // records whose failure is being handled
  int silentMode;                         // non-zero: silent

 private:
  // The key of a source position: "<file>(<line>)", the line as unsigned.
  static SYS_String KeyOf(char const *file, std::int32_t line);
  // This manager's record at the position of record, or null.
  AssertData *OwnRecord(AssertData const *record);
  // Points currentAssert, the active stack and fatalData at this manager's
  // own records, after they were copied from another manager.
  void AdoptPointers(SSM &other);
};

#endif  // TOVIK_SSM_H
