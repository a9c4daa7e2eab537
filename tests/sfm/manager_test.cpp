#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "app_profile.h"
#include "sfm_manager.h"
#include "sfm_message_db.h"
#include "sfm_test_support.h"

namespace {

using sfm_test::ReadAll;
using sfm_test::Recorder;
using sfm_test::TempDir;
using sfm_test::WriteAll;

TEST(ManagerTest, EventsActOnTheFileNearestTheHead) {
  TempDir dir;
  std::string const path = dir / "twice.txt";
  SFM_File first(path.c_str());
  SFM_File second(path.c_str());
  SFM_File other((dir / "other.txt").c_str());
  EXPECT_EQ(first.Open("r"), 0);
  EXPECT_EQ(SFM::GetManager()->GetFileList().GetHead(), &second) << "101 moved the nearer twin";
  EXPECT_TRUE(first.GetMsg().IsEmpty());
  EXPECT_FALSE(second.GetMsg().IsEmpty()) << "the text went to the nearer twin";

  SFM_File fine((dir / "fine.txt").c_str(), "w");
  EXPECT_TRUE(fine.GetMsg().IsEmpty()) << "notices store no text";
}

TEST(ManagerTest, OneAnswerPerEvent) {
  Recorder retry;
  retry.answer = [](int, SFM_EventData &) { return SFM::EvRetry; };
  SFM_EventData data("name");
  data.SetResult(SFM::EvYes);
  EXPECT_EQ(SFM::GetManager()->Event(SFM::EvClosed, data), SFM::EvRetry) << "step 1 cleared it";
  Recorder yes;
  yes.answer = [](int, SFM_EventData &) { return SFM::EvYes; };
  EXPECT_TRUE(sfm_test::FailsCheck([&] { SFM::GetManager()->Event(SFM::EvClosed, data); }));
}

TEST(ManagerTest, GoneForGoodAfterTheCleanUp) {
  EXPECT_EXIT(
      {
        SFM_File early("early.txt");
        delete SFM::GetManager();
        bool const gone = SFM::GetManager() == nullptr && SFM::GetManager() == nullptr;
        SFM_File late("late.txt");  // registers nowhere, raises nothing
        std::exit(gone && late.Open("r") == 0 ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

TEST(ManagerTest, ServicesDatabaseProfileEditorDirectories) {
  TempDir dir;
  WriteAll(dir / "m.txt", "1:one\n");
  SFM_MessageDB((dir / "m.txt").c_str(), 0).Save((dir / "Messages.MDB").c_str());
  SFM *const manager = SFM::GetManager();
  manager->Initiate((dir / "Messages.MDB").c_str());
  manager->Initiate((dir / "m.txt").c_str());
  ASSERT_NE(manager->GetMessageDB(), nullptr);
  EXPECT_STREQ(manager->GetMessageDB()->getTxt(1), "one");
  EXPECT_EQ(manager->GetMessageDB()->GetSectionBase(""), -1) << "the compiled form, once";
  EXPECT_EQ(manager->IsValid(), 1);

  tovik::app::SetProfilePath((dir / "app.ini").c_str());
  WriteAll(dir / "app.ini", "; kept\n[General]\n Editor = \n");
  manager->ShowFile((dir / "never").c_str());
  EXPECT_EQ(manager->SetProfileString("general", "editor", "touch"), 1);
  EXPECT_EQ(ReadAll(dir / "app.ini"), "; kept\n[General]\nEditor=touch\n");
  manager->ShowFile((dir / "shown file").c_str());
  for (int wait = 0; wait < 500 && !std::filesystem::exists(dir / "shown file"); ++wait) ::usleep(10000);
  EXPECT_TRUE(std::filesystem::exists(dir / "shown file"));
  EXPECT_FALSE(std::filesystem::exists(dir / "never"));
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "no child is left to reap";
  EXPECT_EQ(manager->SetProfileInt("general", "count", 7), 1);
  EXPECT_EQ(manager->GetProfileIntA("GENERAL", "count", 0), 7);
  EXPECT_EQ(manager->GetProfileIntA("general", "missing", 3), 3);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path), {}), 4) << "no temporary left";

  manager->GetDirectories().Append(SFM_Directory("/lib"));
  EXPECT_STREQ(manager->GetExternalFileName(0, "x.so"), "/lib\\x.so");
}

// Byte j of file i.
unsigned char Content(int i, int j) { return static_cast<unsigned char>((i * 131 + j * 7) ^ (i >> 3)); }

#if defined(__SANITIZE_ADDRESS__)
#define TOVIK_TEST_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TOVIK_TEST_SANITIZED 1
#endif
#endif

// The sanitizers' runtime needs descriptors of its own at any moment (to
// check a pointer it opens a pipe): opens fail while fewer than 4 are free.
[[maybe_unused]] int KeepFourFree(tovik::io::Operation operation) {
  if (operation != tovik::io::Operation::Open) return 0;
  int spare[4];
  int free = 0;
  for (; free < 4 && (spare[free] = ::fcntl(2, F_DUPFD_CLOEXEC, 0)) >= 0; ++free) {
  }
  for (int k = 0; k < free; ++k) ::close(spare[k]);
  return free < 4 ? EMFILE : 0;
}

// 10000 files through 64 handles, each written in two parts and read back,
// in random order; 0 when every byte came back.
int Soak(std::string const &dir) {
  rlimit const limit = {64, 64};
  if (::setrlimit(RLIMIT_NOFILE, &limit) != 0) return 2;
#ifdef TOVIK_TEST_SANITIZED
  tovik::io::SetFaultHook(&KeepFourFree);
#endif
  constexpr int kFiles = 10000;
  constexpr int kPart = 24;
  std::vector<std::unique_ptr<SFM_File>> files;
  for (int i = 0; i < kFiles; ++i) {
    files.push_back(std::make_unique<SFM_File>((dir + "/f" + std::to_string(i)).c_str()));
  }
  std::vector<int> order;
  for (int step = 0; step < 3; ++step) {
    for (int i = 0; i < kFiles; ++i) order.push_back(i);
  }
  std::shuffle(order.begin(), order.end(), std::mt19937(12));
  std::vector<int> done(kFiles, 0);
  for (int i : order) {
    SFM_File &file = *files[static_cast<std::size_t>(i)];
    unsigned char bytes[2 * kPart];
    for (int j = 0; j < 2 * kPart; ++j) bytes[j] = Content(i, j);
    int const step = done[static_cast<std::size_t>(i)]++;
    if (step == 0 && (!file.Open("w+b") || !file.Write(bytes, kPart))) return 3;
    if (step == 1 && !file.Write(bytes + kPart, kPart)) return 4;
    if (step == 2) {
      unsigned char back[2 * kPart] = {};
      file.Rewind();
      if (file.Read(back, 2 * kPart) != 2 * kPart || std::memcmp(back, bytes, sizeof back) != 0) {
        std::fprintf(stderr, "file %d came back wrong\n", i);
        return 5;
      }
      file.Close();
    }
  }
  return 0;
}

TEST(ManagerTest, SoakTenThousandFilesThroughSixtyFourHandles) {
  TempDir dir;
  EXPECT_EXIT(std::exit(Soak(dir.path)), ::testing::ExitedWithCode(0), "");
}

}  // namespace
