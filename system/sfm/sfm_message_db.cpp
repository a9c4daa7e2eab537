#include "sfm_message_db.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "file_io.h"
#include "mbtext.h"
#include "sfm_manager.h"
#include "ssm.h"

template class SCC_SafeDListNode<SFM_MessageDB::SectionTableNode>;
template class SCC_SafeDListIterator<SFM_MessageDB::SectionTableNode>;
template class SCC_SafeDList<SFM_MessageDB::SectionTableNode>;
template class SCC_SList<SCC_MapNode<int, SFM_MessageDB::keyTableElem>>;
template class SCC_SDList<SCC_MapNode<int, SFM_MessageDB::keyTableElem>>;
template class SCC_SListIterator<SCC_MapNode<int, SFM_MessageDB::keyTableElem>>;
template class SCC_Map<int, SFM_MessageDB::keyTableElem>;
template class SCC_MapIterator<int, SFM_MessageDB::keyTableElem>;
template class SCC_Comparator<SFM_MessageDB::keyTableElem>;
template class _SCC_Buffer<SFM_MessageDB::keyTableElem>;
template class SCC_Array<SFM_MessageDB::keyTableElem>;
template class SCC_SortableArray<SFM_MessageDB::keyTableElem>;

namespace {

typedef SFM_MessageDB::keyTableElem Key;

// Texts are fetched into a buffer of this size, their NUL included.
constexpr int kTextBuffer = 200;
constexpr std::int32_t kHeaderSize = 14;
constexpr std::int32_t kRecordSize = 36;
constexpr int kIdField = 20;
constexpr std::int32_t kMostRecords = 32767;
// A text file of millions of lines must not ask for a table beyond reason;
// the map still grows by itself.
constexpr std::int64_t kMostBuckets = std::int64_t{1} << 22;

std::int32_t Int16At(unsigned char const *p) {
  return static_cast<std::int16_t>(static_cast<std::uint16_t>(p[0] | p[1] << 8));
}

std::uint32_t Word32At(unsigned char const *p) {
  return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
         static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

std::int32_t Int32At(unsigned char const *p) { return static_cast<std::int32_t>(Word32At(p)); }

void PutWord16(unsigned char *p, std::uint32_t value) {
  p[0] = static_cast<unsigned char>(value);
  p[1] = static_cast<unsigned char>(value >> 8);
}

void PutWord32(unsigned char *p, std::uint32_t value) {
  PutWord16(p, value);
  PutWord16(p + 2, value >> 16);
}

// The loader's one output, in its fixed forms.
void Report(SYS_String const &file, std::int64_t line, char const *what, SYS_String const *text) {
  if (text == nullptr) {
    std::printf("%s(%d) : %s\n", static_cast<char const *>(file), static_cast<int>(line), what);
  } else {
    std::printf("%s(%d) : %s : \"%s\"\n", static_cast<char const *>(file), static_cast<int>(line),
                what, static_cast<char const *>(*text));
  }
}

// True when the last character of text (length bytes) is a one-byte '$'.
bool EndsInDollar(char const *text, std::int32_t length) {
  if (length == 0 || text[length - 1] != '$') return false;
  if (tovik::mb::GetCodePage() == tovik::mb::CodePage::SingleByte) return true;
  char const *last = text;
  for (char const *p = text; p < text + length; p = tovik::mb::Inc(p)) last = p;
  return last == text + length - 1;
}

}  // namespace

SFM_MessageDB::SFM_MessageDB(SYS_String const &name)
    : keys(nullptr), tableSize(0), file(name), largestKey(INT32_MIN) {
  LoadCompiled();
}

SFM_MessageDB::SFM_MessageDB(SYS_String const &name, int)
    : keys(nullptr), tableSize(0), file(name), largestKey(INT32_MIN) {
  LoadText();
}

SFM_MessageDB::SFM_MessageDB(SFM_MessageDB &other)
    : keys(nullptr), tableSize(0), largestKey(INT32_MIN) {
  TakeOver(other);
}

SFM_MessageDB &SFM_MessageDB::operator=(SFM_MessageDB &other) {
  TakeOver(other);
  return *this;
}

SFM_MessageDB::~SFM_MessageDB() {
  delete keys;
  sections.DeleteAll();
}

int SFM_MessageDB::IsValid() const { return 1; }

void SFM_MessageDB::TakeOver(SFM_MessageDB &other) {
  if (&other == this) return;
  delete keys;
  sections.DeleteAll();
  file.Close();
  sections.TakeOver(other.sections);
  keys = other.keys;
  other.keys = nullptr;
  tableSize = other.tableSize;
  largestKey = other.largestKey;
  sortedKeys.swap(other.sortedKeys);
  other.sortedKeys.clear();
  // The positions refer to the file: this object reads it through a stream
  // of its own.
  file.SetName(other.file.GetName());
  if (other.file.IsOpen()) {
    SYS_String const mode = other.file.GetMode();
    other.file.Close();
    file.Open(mode);
  }
}

void SFM_MessageDB::MakeKeys(std::int64_t count) {
  std::int64_t size = count + count / 4;
  if (size < 1) size = 1;
  if (size > kMostBuckets) size = kMostBuckets;
  tableSize = static_cast<std::int32_t>(size);
  keys = new SCC_Map<int, Key>(tableSize, 1, &SCC_MapHash<int>);
}

void SFM_MessageDB::AddKey(std::int64_t key, std::int64_t position, std::uint32_t length) {
  // A text that cannot be reached is no text at all.
  if (position < 0 || position > INT32_MAX) return;
  Key const entry = {static_cast<int>(key), static_cast<std::int32_t>(position),
                     static_cast<unsigned char>(length)};
  if (keys->Insert(entry.key, entry) == nullptr) return;
  if (entry.key > largestKey) largestKey = entry.key;
}

void SFM_MessageDB::LoadText() {
  if (!file.Open("r")) return;
  // The loading pass reads the same pieces (lines of up to 510 bytes); a read
  // that gets nowhere ends the count, so a failing file cannot hold it.
  std::int64_t lines = 0;
  for (std::int32_t position = 0; !file.Eof(); ++lines) {
    file.GetLine(0);
    std::int32_t const next = file.GetPosition();
    if (next <= position) break;
    position = next;
  }
  file.Seek(0, SFM_File::begin);
  MakeKeys(lines);
  SectionTableNode *current = new SectionTableNode("", -1, 0);
  sections.AddHead(current);
  SYS_String const &name = file.GetName();
  std::int64_t base = 0;
  std::int64_t lastId = 0;
  for (std::int64_t number = 1; number <= lines; ++number) {
    std::int32_t const position = file.GetPosition();
    SYS_String line = file.GetLine(0);
    line.TrimRight();
    char const *const text = line;
    std::int32_t const length = line.GetLength();
    if (length == 0 || text[0] == ';') continue;
    if (text[0] == ' ') {
      Report(name, number, "leading blanks are not allowed", nullptr);
      continue;
    }
    if (text[0] == '[') {
      std::int32_t const opening = static_cast<std::int32_t>(tovik::mb::Spn(text, "["));
      std::int32_t const nameLength = length - 1 - opening;
      // A name that getTxt could not give back whole is refused too.
      if (line.Find(']') != length - 1 || nameLength >= kTextBuffer || lastId + 2 > INT32_MAX) {
        Report(name, number, "invalid section", &line);
        continue;
      }
      base = lastId + 2;
      current = new SectionTableNode(line.Mid(opening, nameLength), static_cast<std::int32_t>(base - 1), 0);
      sections.AddHead(current);
      AddKey(-base, std::int64_t{position} + opening, static_cast<std::uint32_t>(nameLength));
      continue;
    }
    std::int32_t const colon = line.Find(':');
    std::int32_t const number32 = tovik::mb::Atoi(text);
    std::int64_t const id = base + number32;
    std::int32_t const textLength = length - colon - 1;
    // Negative ids are the sections' keys; texts must fit getTxt's buffer.
    if (colon <= 0 || textLength >= kTextBuffer || id < 0 || id > INT32_MAX) {
      Report(name, number, "invalid line", &line);
      continue;
    }
    lastId = id;
    if (number32 > current->largest) current->largest = number32;
    AddKey(id, std::int64_t{position} + colon + 1, static_cast<std::uint32_t>(textLength));
  }
}

void SFM_MessageDB::LoadCompiled() {
  if (!file.Open("rb")) return;
  unsigned char header[kHeaderSize];
  std::int32_t count = 0;
  std::int32_t tableCount = 0;
  if (file.Read(header, kHeaderSize) == kHeaderSize) {
    tableCount = Int16At(header + 2);
    count = Int16At(header + 4);
  }
  // The table is sized by the records the file can hold, not by a header
  // that may claim more.
  std::int64_t const fits = (std::int64_t{file.GetLength()} - kHeaderSize) / kRecordSize;
  MakeKeys(std::max<std::int64_t>(0, std::min<std::int64_t>(count, fits)));
  std::int32_t const start = file.GetPosition();
  std::int64_t textArea = 0;
  unsigned char record[kRecordSize];
  for (std::int32_t i = 0; i < count; ++i) {
    if (file.Read(record, kRecordSize) != kRecordSize) break;  // the file ends early
    if (i == 0) textArea = start + std::int64_t{tableCount} * (file.GetPosition() - start);
    char idText[kIdField + 1];
    std::memcpy(idText, record + 16, kIdField);
    idText[kIdField] = '\0';
    std::int64_t id = tovik::mb::Atoi(idText);
    std::int64_t const position = textArea + Int32At(record + 4);
    std::uint32_t const length = Word32At(record + 8) % 255;
    if (record[2] == 1) {
      char text[256];
      std::int32_t got = 0;
      // A failed seek is never followed by a read from where the file stood.
      if (length > 1 && position >= 0 && position <= INT32_MAX &&
          file.PushPosition(static_cast<int>(position), SFM_File::begin)) {
        got = file.Read(text, static_cast<std::int32_t>(length - 1));
        file.PopPosition();
      }
      text[got] = '\0';
      sections.AddHead(new SectionTableNode(text, static_cast<std::int32_t>(id), Int32At(record + 12)));
      id = -1 - id;
    }
    AddKey(id, position, length);
  }
}

SYS_String SFM_MessageDB::getTxt(std::int32_t id) {
  if (keys == nullptr || !file.IsOpen()) return SYS_String();
  Key const *const entry = keys->Find(id);
  if (entry == nullptr || !file.Seek(entry->position, SFM_File::begin)) return SYS_String();
  char buffer[kTextBuffer];
  std::int32_t const wanted = entry->length < kTextBuffer ? entry->length : kTextBuffer - 1;
  std::int32_t const got = file.Read(buffer, wanted);
  std::int32_t length = static_cast<std::int32_t>(::strnlen(buffer, static_cast<std::size_t>(got)));
  if (EndsInDollar(buffer, length)) --length;
  return SYS_String(buffer, length);
}

SFM_MessageDB::SectionTableNode *SFM_MessageDB::GetSection(SYS_String const &name) {
  for (SectionTableNode *node = sections.GetHead(); node != nullptr; node = node->GetNextInList()) {
    if (tovik::mb::ICmp(node->name, name) == 0) return node;
  }
  return nullptr;
}

std::int32_t SFM_MessageDB::GetSectionBase(SYS_String const &name) {
  SectionTableNode const *const node = GetSection(name);
  if (node == nullptr) return -1;
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(node->id) + 1U);
}

void SFM_MessageDB::Save(SYS_String const &name) {
  bool const own = file.IsOpen() && tovik::io::SameFile(file.GetName(), name);
  SSM_CHECK(!own, "Tovik: Save cannot write over the database's own file");
  if (own) return;
  std::int32_t const count = keys != nullptr ? keys->GetCount() : 0;
  if (count > kMostRecords) {
    // The header counts in 16 bits: refuse before the target is touched.
    if (SFM *const manager = SFM::GetManager()) {
      errno = EFBIG;
      SFM_EventData data(name, nullptr);
      manager->Event(SFM::EvWriteFailed, data);
    }
    return;
  }
  SFM_File out(name, "w+b");
  if (!out.IsOpen()) return;
  unsigned char record[kRecordSize] = {};
  if (!out.Write(record, kRecordSize)) return;
  std::int32_t const recordSize = out.GetPosition();
  out.Seek(0, SFM_File::begin);

  SCC_SortableArray<Key> sorted;
  if (keys != nullptr) {
    for (SCC_MapIterator<int, Key> it(*keys); it.IsValid(); it.GetNext()) sorted.Append(it.GetValue());
  }
  sorted.SetComparator(new SCC_Comparator<Key>());

  unsigned char header[kHeaderSize] = {};
  PutWord16(header + 2, static_cast<std::uint32_t>(count));
  PutWord16(header + 4, static_cast<std::uint32_t>(count));
  if (!out.Write(header, kHeaderSize)) return;
  std::int32_t tablePosition = kHeaderSize;
  std::int32_t const textStart = kHeaderSize + count * recordSize;
  std::int32_t textPosition = textStart;
  for (std::int32_t i = 0; i < count; ++i) {
    Key const &entry = sorted.GetAt(i);
    char text[257];
    if (!file.Seek(entry.position, SFM_File::begin)) return;
    std::int32_t length = file.Read(text, entry.length);
    // A text cut short by the end of the file is saved as it stands; a read
    // error (reported by the file) ends the save.
    if (length < entry.length && !file.Eof()) return;
    if (length != 0 && text[length - 1] != '\0') text[length++] = '\0';
    PutWord16(record, static_cast<std::uint32_t>(i));
    record[2] = entry.key < 0 ? 1 : 0;
    record[3] = 0;
    PutWord32(record + 4, static_cast<std::uint32_t>(textPosition - textStart));
    PutWord32(record + 8, static_cast<std::uint32_t>(length));
    std::int64_t id = entry.key;
    if (entry.key < 0) {
      id = -std::int64_t{1} - entry.key;
      SectionTableNode const *const section = GetSection(length != 0 ? text : "");
      SSM_CHECK(section != nullptr, "Tovik: a section key names no section");
      if (section != nullptr) PutWord32(record + 12, static_cast<std::uint32_t>(section->largest));
    }
    // Only the digits and their NUL are written: the rest of the field keeps
    // what the records before left there.
    std::snprintf(reinterpret_cast<char *>(record + 16), kIdField, "%d", static_cast<int>(id));
    if (!out.Seek(tablePosition, SFM_File::begin) || !out.Write(record, kRecordSize)) return;
    tablePosition = out.GetPosition();
    if (!out.Seek(textPosition, SFM_File::begin) || !out.Write(text, length)) return;
    textPosition = out.GetPosition();
  }
  out.Close();
}

SFM_MessageDB::SectionIterator::SectionIterator(SFM_MessageDB *db, SYS_String const &sectionName,
                                                std::int32_t start)
    : database(db), current(-1), last(0), base(0), section(sectionName) {
  SSM_CHECK(db != nullptr, "Tovik: a section iterator needs a database");
  *this = start;
}

void SFM_MessageDB::SectionIterator::operator=(std::int32_t start) {
  SSM_CHECK(database != nullptr, "Tovik: the section iterator has no database");
  current = -1;
  last = 0;
  base = 0;
  if (database == nullptr) return;
  SectionTableNode const *const node = database->GetSection(section);
  if (node == nullptr) return;
  base = database->GetSectionBase(section);
  std::int64_t const end = std::int64_t{base} + node->largest;
  last = static_cast<std::int32_t>(end < database->largestKey ? end : database->largestKey);
  GetNext(std::int64_t{base} + (start < 0 ? 0 : start) - 1);
}

void SFM_MessageDB::SectionIterator::operator=(SectionIterator const &other) {
  SSM_CHECK(database != nullptr, "Tovik: the section iterator has no database");
  database = other.database;
  current = other.current;
  last = other.last;
  base = other.base;
  section = other.section;
}

SFM_MessageDB::SectionIterator::operator SYS_String() const {
  if (IsEmpty()) return SYS_String();
  return database->getTxt(current);
}

SYS_String SFM_MessageDB::SectionIterator::operator++() {
  if (!IsEmpty()) GetNext(current);
  return *this;
}

SYS_String SFM_MessageDB::SectionIterator::operator++(int) {
  SYS_String const text = *this;
  if (!IsEmpty()) GetNext(current);
  return text;
}

void SFM_MessageDB::SectionIterator::GetNext(std::int64_t from) {
  SSM_CHECK(database->keys != nullptr, "Tovik: the database has no keys");
  current = -1;
  if (database->keys == nullptr || from >= last) return;
  // The next key is looked up among the keys in order, so a gap in the
  // numbering costs no more than a step to a neighbour.
  std::vector<int> const &sorted = database->SortedKeys();
  auto const next = std::upper_bound(sorted.begin(), sorted.end(), from,
                                     [](std::int64_t id, int key) { return id < key; });
  if (next != sorted.end() && *next <= last) current = *next;
}

std::vector<int> const &SFM_MessageDB::SortedKeys() {
  // The map is complete once loaded, so the index is made once.
  if (sortedKeys.empty() && keys != nullptr && keys->GetCount() != 0) {
    sortedKeys.reserve(static_cast<std::size_t>(keys->GetCount()));
    for (SCC_MapIterator<int, Key> it(*keys); it.IsValid(); it.GetNext()) sortedKeys.push_back(it.GetKey());
    std::sort(sortedKeys.begin(), sortedKeys.end());
  }
  return sortedKeys;
}
