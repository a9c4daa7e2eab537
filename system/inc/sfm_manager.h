// SFM: the process's one file manager, and the events of files.
//
// The manager knows every SFM_File through a list, the most recently opened
// at the head, and is the one entry for their failures: SFM::Event stores the
// system's last error, makes a readable text, tells the subscribers of
// GetEvent() and returns their answer (2: retry, 1: go ahead and overwrite).
// When an open fails because the process has run out of file handles, the
// manager closes the least recently opened file that can be spared and
// answers 2 at once, without telling anybody; so any number of files can be
// open. There is no budget: it acts only when an open fails.
//
// The manager is made by the first GetManager() and destroyed by a clean-up
// at process exit; from then on GetManager() answers null for good, and files
// that outlive it raise no events. It does not own the files in its list.
//
// Its services: the process's one message database (Initiate), the
// application's profile (app_profile.h), an external editor for a file, and
// names looked up in a list of directories.
#ifndef TOVIK_SFM_MANAGER_H
#define TOVIK_SFM_MANAGER_H

#include <cstdint>

#include "scc_array.h"
#include "scc_event.h"
#include "scc_map.h"
#include "scc_safe_list.h"
#include "sfm_directory.h"
#include "sfm_file.h"
#include "sys_string.h"
#include "tovik_export.h"

class SFM_EventData;
class SFM_MessageDB;

// Every registered file. Destroying the list leaves the files alone.
class TOVIK_API SFM_FileList : public SCC_SafeDList<SFM_File> {};

// The directories GetExternalFileName looks in, filled by the application.
class TOVIK_API SFM_DirArray : public SCC_Array<SFM_Directory> {};

class TOVIK_API SFM {
 public:
  // Event codes and the answers to them.
  enum EventCode : int {
    EvNone = 0,
    EvYes = 1,             // answer to EvOverwrite: go ahead
    EvRetry = 2,           // answer to a failure: try again
    EvOpening = 101,       // a file is about to be opened or brought back
    EvOpened = 102,
    EvClosed = 103,
    EvOverwrite = 151,     // the target of a copy or move exists: replace it?
    EvOpenFailed = 201,
    EvCloseFailed = 202,
    EvReadFailed = 203,
    EvWriteFailed = 204,
    EvCopyFailed = 205,
    EvMoveFailed = 206,
    EvDeleteFailed = 207
  };

  // The manager, made on first use; null for good once it was destroyed.
  static SFM *GetManager();

  SFM();
  // Loads the message database once: a name with the extension ".mdb" (in
  // any case) in the compiled form, any other in the text form. Later calls
  // and a null name change nothing.
  virtual void Initiate(char const *name);
  // Checks the message database and every file of the list, each test a
  // check of its own; 1 when all hold, else 0.
  virtual int IsValid() const;
  // Take over other's subscribers. A second manager has no place in the
  // design: the copy does not become the process's manager, and the files
  // stay with the manager they registered with.
  SFM(SFM &other);
  SFM &operator=(SFM &other);
  virtual ~SFM();

  // The application's profile, by section and entry.
  SYS_String ReadProfileString(char const *section, char const *entry, char const *defaultValue);
  int SetProfileString(char const *section, char const *entry, char const *value);
  int GetProfileIntA(char const *section, char const *entry, int defaultValue);
  int SetProfileInt(char const *section, char const *entry, int value);
  // Starts the editor of the profile's entry "editor" in section "general"
  // on the file, without waiting for it; nothing without an editor.
  void ShowFile(char const *name);
  // name in the directory of that index (a bad index fails a check), unless
  // it has a base of its own or is absolute.
  SYS_String GetExternalFileName(int index, char const *name);
  // The message database, null until Initiate.
  SFM_MessageDB *GetMessageDB() const { return messageDB; }
  // The directories of GetExternalFileName, for the application to fill.
  SFM_DirArray &GetDirectories() { return directories; }

  // The one entry for file events; see the header comment. Codes from 151 up
  // get the system's text for the error, which the first file of that name
  // (from the head) keeps as its message. 101 moves the first file of that
  // name to the head. A 201 for want of handles closes another file and
  // answers 2 without telling the subscribers; with no file to close it goes
  // to the subscribers like any other failure.
  EventCode Event(EventCode code, SFM_EventData &data);

  // Where subscribers join: their OnNotification(code, data) answers with
  // data->SetResult.
  SCC_Event<SFM_EventData> &GetEvent() { return event; }
  SFM_FileList const &GetFileList() const { return fileList; }

 protected:
  static SFM *Instance;
  static std::int32_t InstanceCount;

 private:
  friend class SFM_File;

  // The system's text for data's error, or the numbered fallback.
  void CreateMessage(EventCode code, SFM_EventData &data);
  // Event as raised by a file of the list, which is then the first file of
  // its name whenever no other file has that name.
  EventCode Event(EventCode code, SFM_EventData &data, SFM_File *raiser);
  // Temp-closes the least recently opened file that may be; 1 if it did.
  int TempCloseSomeFile();
  // The first file of that name from the head, or null.
  SFM_File *FindFirstFile(SYS_String const &fileName, SFM_File *raiser);
  // Bookkeeping of the files in the list: their names, and which hold a stream.
  void CountName(SYS_String const &fileName, int change);
  void CountStream(int change) { streamFiles += change; }

  SFM_FileList fileList;
  SFM_MessageDB *messageDB;  // owned; null until Initiate
  SCC_Event<SFM_EventData> event;
  SFM_DirArray directories;
  // How many files of the list have each name, so that an event finds its
  // file without a walk when the name is unique.
  SCC_Map<SYS_String, std::int32_t> nameCounts;
  // How many files of the list hold a stream: a walk for one to close stops
  // once it has met them all.
  std::int32_t streamFiles;
};

// One file event: the names of the files, the system's error, its text and
// the answer of a subscriber.
class TOVIK_API SFM_EventData {
 public:
  // Null names stand for empty ones.
  SFM_EventData(char const *name1 = nullptr, char const *name2 = nullptr);

  SYS_String GetFileName1() const { return fileName1; }
  SYS_String GetFileName2() const { return fileName2; }
  int GetError() const { return error; }
  SFM::EventCode GetResult() const { return result; }
  // One answer per event: a second non-zero answer fails a check. 0 clears.
  void SetResult(SFM::EventCode code);
  void SetText(SYS_String const &newText) { text = newText; }
  // The text, then for each non-empty name CR LF and the name in quotes.
  SYS_String GetText() const;

 private:
  friend class SFM;
  int error;
  SYS_String fileName1;
  SYS_String fileName2;
  SYS_String text;
  SFM::EventCode result;
};

#endif  // TOVIK_SFM_MANAGER_H
