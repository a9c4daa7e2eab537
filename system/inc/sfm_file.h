// SFM_File: the library's one file class, a buffered stream with a name.
//
// Every file registers with the file manager (sfm_manager.h) and reports each
// open, close, read and write failure to it as an event, which the
// application may answer (2 retries an open). When the process runs out of
// file handles the manager closes the least recently opened file behind its
// user's back ("temp-closed"); the file reopens itself at the same position at
// its next use, and its user never sees the difference: IsOpen stays true, the
// position and the length cache survive. A "w" mode comes back as "a", so a
// reopen never truncates what was written.
//
// The mode string decides what is legal: a mode with "b" is binary (Get, Put
// and raw Read/Write), any other is text (GetChar, GetLine and the rest).
// Binary values travel with the width of their type in the host's byte
// order; the flag of Get and Put reverses the order of the bits (not bytes).
// Misuse (opening an open file, a text operation on a binary file, a null
// buffer) is a failed check; a failed transfer answers 0 and raises an event,
// and GetMsg then holds the reason. Positions and lengths are 32-bit: a file
// is used up to 2 GiB - 1 bytes.
//
// The file does not own its manager and the manager does not own the file.
// Copies of a file name the same file but share nothing else.
#ifndef TOVIK_SFM_FILE_H
#define TOVIK_SFM_FILE_H

#include <cstdint>
#include <cstdio>

#include "scc_array.h"
#include "scc_safe_list.h"
#include "sys_string.h"
#include "tovik_export.h"

class SFM;
namespace tovik::io {
struct MappedView;
}

class TOVIK_API SFM_File : public SCC_SafeDListNode<SFM_File> {
 public:
  // Origins of Seek, as fseek takes them.
  enum SeekType { begin = 0, current = 1, end = 2 };

  // A closed file; a non-empty name is stored and its length is not known
  // yet. Registers with the manager (at the head of its list) if there is one.
  SFM_File(char const *name = "");
  // As above, then Open(mode). Both texts must be non-empty. Whether the file
  // opened is told by IsOpen.
  SFM_File(char const *name, char const *mode);
  // A closed file of the same name, not registered with the manager.
  SFM_File(SFM_File const &other);
  // Closes this file, then takes other's name and mode; the file stays
  // closed. Never shares a stream: two objects never close one stream.
  SFM_File &operator=(SFM_File const &other);
  // Close, then leaves the manager's list.
  ~SFM_File() override;

  SYS_String const &GetName() const { return name; }
  SYS_String const &GetMode() const { return mode; }
  // The text of the last failure, written by the manager.
  SYS_String const &GetMsg() const { return message; }
  // Name and mode of a file that is not open (else a failed check).
  void SetName(SYS_String const &text);
  void SetMode(SYS_String const &text);
  char const *operator=(char const *text);
  void SetMsg(SYS_String const &text) { message = text; }

 private:
  friend class SFM;
  // Open and not temp-closed: the manager may close it for a while.
  virtual int MayBeTempClosed() const;
  // Saves the position and closes the stream; the file stays logically open.
  virtual void TempClose();

 public:
  // Close, SetName(name), Open(mode).
  virtual int ReOpen(SYS_String const &newName, SYS_String const &newMode);

 private:
  // Brings a temp-closed file back (event 101, mode "w" as "a", position
  // restored). If that fails, the failure goes through event 201 like a
  // failed Open, which may retry; a file that cannot come back ends closed.
  virtual void ReOpen();

 public:
  virtual int IsValid() const;
  // Opens with mode (empty: the stored mode). Raises 101, then 102 on
  // success, or 201 on failure, retrying while the answer is 2. 1 or 0.
  virtual int Open(SYS_String newMode);
  // 1 when the stream's end flag is set or the position is the length.
  virtual int Eof();
  // True while open, temp-closed included.
  virtual int IsOpen() const;
  virtual void Flush();
  // Closes an open file (103, or 202 on failure) and ends a memory map.
  virtual void Close();
  // A private copy-on-write view of the whole file: writing into it changes
  // memory, never the file. The file is temp-closed for the time of the map
  // and comes back at UnmapMemory. Null for a file that is not open, an
  // empty file or a failure; a file already mapped gives its view again.
  virtual void *MapToMemory();
  virtual void UnmapMemory();
  // 1 on success; 0 on failure or when the file is not open.
  virtual int Seek(int offset, SeekType type);
  // Seeks as asked and saves the position it left on the stack; on failure
  // it goes back there, saves nothing and answers 0.
  virtual int PushPosition(int offset, SeekType type);
  // Goes back to the last saved position (an empty stack: a failed check).
  virtual void PopPosition();
  // Bytes read (0 for a file that is not open); a failure raises 203.
  virtual std::int32_t Read(void *buffer, std::int32_t count);
  // 1 when every byte was written; a failure raises 204.
  virtual int Write(void const *buffer, std::int32_t count);

  // Binary values: the value read is also stored in the argument, which after
  // a short read holds what was read over it. A non-zero flag reverses the
  // bits over the value's width.
  virtual double Get(double &value);
  virtual std::uint32_t Get(std::uint32_t &value, int reverse = 0);
  virtual std::int32_t Get(std::int32_t &value, int reverse = 0);
  virtual unsigned char Get(unsigned char &value, int reverse = 0);
  virtual char Get(char &value, int reverse = 0);
  virtual unsigned short Get(unsigned short &value, int reverse = 0);
  virtual short Get(short &value, int reverse = 0);
  // 1 when the value was written, else 0.
  virtual int Put(double value);
  virtual int Put(std::uint32_t value, int reverse = 0);
  virtual int Put(std::int32_t value, int reverse = 0);
  virtual int Put(unsigned char value, int reverse = 0);
  virtual int Put(char value, int reverse = 0);
  virtual int Put(unsigned short value, int reverse = 0);
  virtual int Put(short value, int reverse = 0);

  // One character; CR LF reads as LF. -1 at the end, on an error or when
  // the file is not open.
  virtual char GetChar();
  virtual int PutChar(char c);
  // One line with its line end if it fits: at most size - 1 bytes, where a
  // size of 0 or of 511 and above (taken unsigned, so -1 too) means 511. The
  // empty text at the end, on an error (203) or for a file that is not open.
  virtual SYS_String GetLine(std::int32_t size = 0);
  // The text and one LF in a single write; 1 when all was written.
  virtual int WriteLine(SYS_String const &text);
  // printf into the file in the "C" locale: what vfprintf answered, or 0 on
  // an error (204) or when the file is not open.
  virtual std::int32_t Printf(char const *format, ...) __attribute__((format(printf, 2, 3)));

  // The file operations of SFM_Directory on this file's name, with their
  // events: CopyFileA, MoveFileA, DeleteFileA and FileExists.
  int Copy(char const *target, int overwrite);
  int Move(char const *target, int overwrite);
  int Delete();
  int Exists();

  void Rewind() { Seek(0, begin); }
  void SeekToEnd() { Seek(0, end); }
  // The position, or -1 when the file is not open (or beyond 2 GiB - 1).
  std::int32_t GetPosition();
  // The cached length; when it is not known, measured (a closed file is
  // opened for the moment, without events). -1 for a file that cannot be
  // opened; 0 for a new file with no name.
  std::int32_t GetLength();

 private:
  // Name and stream changes, told to the manager while the file is in its list.
  void Rename(SYS_String const &text);
  void SetStream(FILE *newStream);
  // The mode for bringing a temp-closed file back: "w" becomes "a".
  SYS_String GetReOpenMode() const;
  // Forgets the cached length unless the position lies inside it.
  void CheckLength();
  // Reopens a temp-closed file and checks the stream: true when it is there.
  bool Ready();
  // Tells the manager; EvNone when there is none.
  int RaiseEvent(int code);
  // The error state of a transfer that just ran: on an error, raises code.
  bool TransferFailed(int code);
  // The binary transfers behind Get and Put, reversing the bits on request.
  bool GetBytes(void *value, std::int32_t width, int reverse);
  int PutBytes(void const *value, std::int32_t width, int reverse);
  bool IsBinary() const;

  FILE *stream;
  SYS_String name;
  SYS_String mode;
  SYS_String message;
  std::int32_t length;
  int tempClosed;
  SCC_Stack<std::int32_t> positions;
  tovik::io::MappedView *mapping;
};

#endif  // TOVIK_SFM_FILE_H
