#include <cerrno>
#include <filesystem>
#include <string>

#include "sfm_file.h"
#include "sfm_test_support.h"

namespace {

using sfm_test::FailNth;
using sfm_test::ReadAll;
using sfm_test::Recorder;
using sfm_test::TempDir;
using sfm_test::WriteAll;
using Op = tovik::io::Operation;

TEST(FileTest, LengthCacheIsKeptByWritesInsideAndByClose) {
  TempDir dir;
  std::string const path = dir / "a.bin";
  SFM_File file(path.c_str(), "w+b");
  file.Write("hello", 5);
  EXPECT_EQ(file.GetLength(), 5);
  std::filesystem::resize_file(path, 9);  // the disk now disagrees with the cache
  file.Seek(1, SFM_File::begin);
  file.Write("E", 1);
  EXPECT_EQ(file.GetLength(), 5) << "a write inside the file keeps the cache";
  file.SeekToEnd();
  file.Write("x", 1);
  EXPECT_EQ(file.GetLength(), 10) << "a write at the end measures again";
  file.Close();
  std::filesystem::remove(path);
  EXPECT_EQ(file.GetLength(), 10) << "Close keeps the cache";
  EXPECT_EQ(SFM_File(path.c_str()).GetLength(), -1);
}

TEST(FileTest, GetLineLimitsAndGetCharLineEnds) {
  TempDir dir;
  std::string const path = dir / "t.txt";
  WriteAll(path, std::string(1200, 'x') + "\na\r\nb\rc");
  // 0 and every size of 511 and above (taken unsigned, so -1 too) mean 511.
  for (auto [size, length] : {std::pair<int, int>{0, 510}, {-1, 510}, {511, 510}, {2, 1}}) {
    EXPECT_EQ(SFM_File(path.c_str(), "r").GetLine(size).GetLength(), length) << size;
  }
  SFM_File file(path.c_str(), "r");
  EXPECT_EQ(file.GetLine().GetLength(), 510);
  EXPECT_EQ(file.GetLine().GetLength(), 510);
  EXPECT_STREQ(file.GetLine(), (std::string(180, 'x') + "\n").c_str()) << "goes on where it stopped";
  std::string chars;
  for (char c = file.GetChar(); c != -1; c = file.GetChar()) chars += c;
  EXPECT_EQ(chars, "a\nb\rc") << "CR LF reads as LF, a lone CR stays";
}

TEST(FileTest, BinaryValuesAndThePositionStack) {
  TempDir dir;
  std::string const path = dir / "v.bin";
  {
    SFM_File file(path.c_str(), "wb");
    file.Put(static_cast<short>(1), 1);
    file.Put(std::uint32_t{1}, 1);
    file.Put(static_cast<char>(3), 1);
    file.Put(std::uint32_t{0x12345678});
  }
  std::string const bytes = ReadAll(path);
  EXPECT_EQ(bytes.substr(0, 11), std::string("\x00\x80\x00\x00\x00\x80\xC0\x78\x56\x34\x12", 11));
  SFM_File file(path.c_str(), "rb");
  short s = 0;
  std::uint32_t u = 0;
  char c = 0;
  EXPECT_EQ(file.Get(s, 1), 1);
  EXPECT_EQ(file.Get(u, 1), 1u);
  EXPECT_EQ(file.Get(c, 1), 3);
  EXPECT_EQ(file.Get(u), 0x12345678u) << "bits keep their order without the flag";
  file.Seek(2, SFM_File::begin);
  EXPECT_EQ(file.PushPosition(-10, SFM_File::begin), 0);
  EXPECT_EQ(file.GetPosition(), 2) << "a failed push stays where it was";
  EXPECT_TRUE(sfm_test::FailsCheck([&] { file.PopPosition(); })) << "the failed push saved nothing";
}

// Opening b while the process has no handle left closes a for a while.
void RunOutOfHandlesOpening(SFM_File &b, char const *mode) {
  FailNth const once(1, EMFILE, {Op::Open});
  EXPECT_EQ(b.Open(mode), 1);
}

TEST(FileTest, TempCloseRoundTripIsInvisible) {
  TempDir dir;
  std::string const pathA = dir / "a.txt";
  std::string const pathB = dir / "b.txt";
  SFM_File a(pathA.c_str(), "w");
  a.Write("abc", 3);
  SFM_File b(pathB.c_str());
  Recorder events;
  RunOutOfHandlesOpening(b, "w");  // a is the least recently opened: it goes
  EXPECT_EQ(events.Codes(), (std::vector<int>{101, 102})) << "the subscribers never hear of it";
  EXPECT_EQ(ReadAll(pathA), "abc") << "a's stream let go of the file";
  EXPECT_TRUE(a.IsOpen());
  EXPECT_EQ(a.GetMode(), "w");
  events.heard.clear();
  EXPECT_EQ(a.GetPosition(), 3);  // comes back, in mode "a": nothing written is lost
  a.Write("def", 3);
  EXPECT_EQ(events.Codes(), (std::vector<int>{101}));
  a.Close();
  EXPECT_EQ(ReadAll(pathA), "abcdef");

  // Coming back while out of handles closes another file instead.
  SFM_File c(pathA.c_str(), "r");
  b.Close();
  b.Open("a");  // now c is the older of the two
  SFM_File d((dir / "d.txt").c_str());
  RunOutOfHandlesOpening(d, "w");  // c goes
  events.heard.clear();
  {
    FailNth const once(1, EMFILE, {Op::Open});
    EXPECT_EQ(c.GetLine(), "abcdef");
  }
  EXPECT_EQ(events.Codes(), (std::vector<int>{101}));
  EXPECT_TRUE(b.IsOpen());
  EXPECT_EQ(b.Write("z", 1), 1);
  EXPECT_EQ(events.Codes(), (std::vector<int>{101, 101})) << "b was the one that went";
}

TEST(FileTest, AFileThatCannotComeBackIsReported) {
  TempDir dir;
  std::string const path = dir / "gone.txt";
  WriteAll(path, "line\n");
  SFM_File a(path.c_str(), "r");
  SFM_File b((dir / "b.txt").c_str());
  RunOutOfHandlesOpening(b, "w");
  std::filesystem::remove(path);
  Recorder events;
  EXPECT_TRUE(sfm_test::FailsCheck([&] { a.GetLine(); })) << "the line cannot be read";
  EXPECT_EQ(events.Codes(), (std::vector<int>{101, 201}));
  EXPECT_FALSE(a.IsOpen());
}

TEST(FileTest, OpenFailuresAndRetries) {
  TempDir dir;
  std::string const path = dir / "late.txt";
  SFM_File file(path.c_str());
  EXPECT_EQ(file.Open("r"), 0);
  EXPECT_EQ(file.GetMsg(), ("No such file or directory\r\n\"" + path + "\"").c_str());

  Recorder events;
  events.answer = [&](int code, SFM_EventData &) {
    if (code != SFM::EvOpenFailed) return SFM::EvNone;
    WriteAll(path, "now");
    return SFM::EvRetry;
  };
  EXPECT_EQ(file.Open("r"), 1);
  EXPECT_EQ(events.Codes(), (std::vector<int>{101, 201, 102}));
  file.Close();

  // Out of handles with nothing to close: the subscribers decide, once.
  events.heard.clear();
  events.answer = nullptr;
  FailNth const always(0, EMFILE, {Op::Open});
  EXPECT_EQ(file.Open("r"), 0);
  EXPECT_EQ(events.Codes(), (std::vector<int>{101, 201}));
  EXPECT_EQ(events.heard[1].text, "Too many open files\r\n\"" + path + "\"");
}

TEST(FileTest, FailedTransfersRaiseOneEventEach) {
  TempDir dir;
  std::string const path = dir / "io.bin";
  SFM_File file(path.c_str(), "w+b");
  Recorder events;
  {
    FailNth const once(1, EIO, {Op::Write});
    EXPECT_EQ(file.Write("abc", 3), 0);
  }
  EXPECT_EQ(file.Write("abc", 3), 1) << "the error state was cleared";
  file.Rewind();
  char buffer[3];
  {
    FailNth const once(1, EIO, {Op::Read});
    EXPECT_EQ(file.Read(buffer, 3), 0);
  }
  EXPECT_EQ(events.Codes(), (std::vector<int>{204, 203}));
  EXPECT_EQ(file.GetMsg(), ("Input/output error\r\n\"" + path + "\"").c_str());
}

TEST(FileTest, MapsAPrivateCopy) {
  TempDir dir;
  std::string const path = dir / "m.bin";
  SFM_File file(path.c_str(), "w+b");
  EXPECT_EQ(file.MapToMemory(), nullptr) << "an empty file";
  file.Write("mapped", 6);  // still in the stream's buffer: the map must see it
  char *const view = static_cast<char *>(file.MapToMemory());
  ASSERT_NE(view, nullptr);
  EXPECT_EQ(std::string(view, 6), "mapped");
  view[0] = 'M';
  file.UnmapMemory();
  EXPECT_EQ(ReadAll(path), "mapped");
  EXPECT_EQ(file.GetPosition(), 6);
  ASSERT_NE(file.MapToMemory(), nullptr);
  Recorder events;
  file.Close();
  EXPECT_EQ(events.Codes(), (std::vector<int>{101, 103}));
  EXPECT_EQ(file.MapToMemory(), nullptr) << "a closed file";
}

TEST(FileTest, MisuseFailsChecks) {
  TempDir dir;
  std::string const path = dir / "x";
  WriteAll(path, "x\n");
  SFM_File binary(path.c_str(), "rb");
  SFM_File text(path.c_str(), "r");
  SFM_File closed(path.c_str());
  char c = 0;
  EXPECT_TRUE(sfm_test::FailsCheck([&] { binary.GetChar(); })) << "GetChar on a binary file";
  EXPECT_TRUE(sfm_test::FailsCheck([&] { text.Get(c); })) << "Get on a text file";
  EXPECT_TRUE(sfm_test::FailsCheck([&] { text.SetName("y"); })) << "renaming an open file";
  EXPECT_TRUE(sfm_test::FailsCheck([&] { text.Open("r"); })) << "opening an open file";
  EXPECT_TRUE(sfm_test::FailsCheck([&] { closed.Eof(); })) << "Eof of a closed file";
  EXPECT_EQ(text.GetName(), path.c_str());
}

TEST(FileTest, CopiesNeverShareAStream) {
  TempDir dir;
  std::string const path = dir / "c.txt";
  SFM_File original(path.c_str(), "w");
  SFM_File copy(original);
  SFM_File assigned;
  assigned = original;
  EXPECT_FALSE(copy.IsOpen());
  EXPECT_FALSE(assigned.IsOpen());
  EXPECT_EQ(assigned.GetName(), path.c_str());
  EXPECT_EQ(original.Printf("%.1f|%d", 1.5, 7), 5) << "the original's stream is its own";
}

}  // namespace
