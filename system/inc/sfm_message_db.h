// SFM_MessageDB: numbered texts in named sections, read from a file on demand.
//
// Memory holds only where each text stands (a key map of absolute id to
// position and length) and the sections; the texts stay in the file, which
// the database keeps open for its whole life. The file has one of two forms:
//
// Text form, written by people, one line at a time, trailing white space
// ignored:
//     ; a comment
//     1:Ready                    message 1 of the current section
//     [errors]                   a section: its base is the last id + 2
//     5:Disk full: $             a final "$" keeps the blank before it
// Bad lines are reported on standard output as
//     <file>(<line>) : invalid line : "<line>"
// (or "leading blanks are not allowed", "invalid section"), and skipped.
//
// Compiled form (".mdb", written by Save), little-endian, fixed widths:
//     header  14 bytes: 0, n (int16), n (int16), 0 (int32), 0 (int32)
//     record  36 bytes each: number (int16), section flag (1 byte), 0,
//             text offset (int32), text length with its NUL (int32),
//             a section's largest number (int32), id as "%d" text (20 bytes)
//     texts   back to back behind the records, each with its NUL
// A compiled file holds at most 32767 records.
//
// An absolute id is a message's number plus its section's base; a section is
// itself a key, -base, whose text is its name. A file that is missing,
// truncated or corrupt never makes the database read outside its buffers or
// loop without end: what cannot be read gives empty texts.
#ifndef TOVIK_SFM_MESSAGE_DB_H
#define TOVIK_SFM_MESSAGE_DB_H

#include <cstdint>
#include <vector>

#include "scc_array.h"
#include "scc_map.h"
#include "scc_safe_list.h"
#include "sfm_file.h"
#include "sys_string.h"
#include "tovik_export.h"

class TOVIK_API SFM_MessageDB {
 public:
  // One entry of the key map: where the text of key stands in the file.
  struct keyTableElem {
    int key;                // an absolute id, or -base for a section
    std::int32_t position;  // from the start of the file
    unsigned char length;   // bytes to read
  };

  class TOVIK_API SectionTableNode : public SCC_SafeDListNode<SectionTableNode> {
   public:
    SectionTableNode(SYS_String const &sectionName, std::int32_t sectionId, std::int32_t largestNumber)
        : name(sectionName), id(sectionId), largest(largestNumber) {}

    SYS_String name;       // empty for the default section
    std::int32_t id;       // the base is id + 1
    std::int32_t largest;  // the largest message number met in the section
  };

  // Walks the messages of one section in the order of their numbers,
  // skipping the numbers that have no text. Valid as long as its database.
  class TOVIK_API SectionIterator {
   public:
    // Stands on the first message at or behind number start (a negative
    // start counts as 0) of the section, found ignoring case; exhausted at
    // once for an unknown section. db must not be null.
    SectionIterator(SFM_MessageDB *db, SYS_String const &sectionName, std::int32_t start = 0);

    void operator=(std::int32_t start);
    void operator=(SectionIterator const &other);
    // The text of the current message; empty when exhausted.
    operator SYS_String() const;
    // Steps, then gives the new text; an exhausted iterator stays so.
    SYS_String operator++();
    // Gives the text, then steps.
    SYS_String operator++(int);
    SYS_String GetName() const { return section; }
    // The number within the section, -1 when exhausted.
    std::int32_t GetPosition() const { return IsEmpty() ? -1 : current - base; }
    int IsEmpty() const { return current < 0 ? 1 : 0; }
    void Clear() { current = -1; }

   private:
    // Stands on the first key above from, up to last; else exhausted.
    void GetNext(std::int64_t from);

    SFM_MessageDB *database;
    std::int32_t current;  // absolute id, -1 when exhausted
    std::int32_t last;     // base + largest number, within the keys there are
    std::int32_t base;
    SYS_String section;
  };

  // Reads the compiled form.
  explicit SFM_MessageDB(SYS_String const &name);
  // Reads the text form; the number only selects the form.
  SFM_MessageDB(SYS_String const &name, int);
  // Takes over other's sections and keys and opens the same file anew;
  // other is left empty. The key map has one owner.
  SFM_MessageDB(SFM_MessageDB &other);
  SFM_MessageDB &operator=(SFM_MessageDB &other);

  virtual int IsValid() const;
  virtual ~SFM_MessageDB();

  // The text of an absolute id, without one final "$"; empty for an unknown
  // id, for a database whose file did not open and for a text that cannot be
  // read. A section's key -base gives its name. At most 199 bytes.
  SYS_String getTxt(std::int32_t id);
  // The base of the first section of that name (ignoring case), or -1.
  std::int32_t GetSectionBase(SYS_String const &name);
  // Writes the compiled form. A failed open (201) or write (204) ends it;
  // so does more than 32767 keys (204, nothing written). Saving onto the
  // database's own file is a failed check.
  void Save(SYS_String const &name);

  // What the database holds, for tools that list it: the key map (null when
  // the file did not open) and the sections, latest added in front.
  SCC_Map<int, keyTableElem> const *GetKeys() const { return keys; }
  SCC_SafeDList<SectionTableNode> const &GetSections() const { return sections; }

 protected:
  // The first section from the front whose name equals name, ignoring case.
  SectionTableNode *GetSection(SYS_String const &name);

 private:
  void LoadText();
  void LoadCompiled();
  // Makes the key map with a bucket count from count entries.
  void MakeKeys(std::int64_t count);
  void AddKey(std::int64_t key, std::int64_t position, std::uint32_t length);
  void TakeOver(SFM_MessageDB &other);
  // The keys in ascending order, made on the first walk that needs them.
  std::vector<int> const &SortedKeys();

  SCC_SafeDList<SectionTableNode> sections;
  SCC_Map<int, keyTableElem> *keys;
  std::int32_t tableSize;
  SFM_File file;
  // The largest key, which bounds every walk.
  std::int32_t largestKey;
  std::vector<int> sortedKeys;
};

// Orders keyTableElem by key, as Save sorts them.
inline int SCC_Compare(SFM_MessageDB::keyTableElem const &a, SFM_MessageDB::keyTableElem const &b) {
  return (a.key > b.key) - (a.key < b.key);
}

#endif  // TOVIK_SFM_MESSAGE_DB_H
