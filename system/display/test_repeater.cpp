// The replay recorder: an interface with no body yet.
#include "sys_test_repeater.h"

#include <cstring>

static_assert(sizeof(SYS_TestFncID) == 31 * 4, "a function name is 31 words");
static_assert(sizeof(SYS_TestRec) == 20 * 4, "a recorded call is 20 words");

SYS_TestFncID::SYS_TestFncID(char *name) { (void)name; }

SYS_TestFncID::SYS_TestFncID(char *name, char *module) {
  (void)name;
  (void)module;
}

SYS_TestFncID::SYS_TestFncID(SYS_TestFncID const &other) { *this = other; }

SYS_TestFncID &SYS_TestFncID::operator=(SYS_TestFncID const &other) {
  std::memmove(words, other.words, sizeof words);
  return *this;
}

SYS_TestRec::SYS_TestRec(SYS_TestRec const &other) { *this = other; }

SYS_TestRec &SYS_TestRec::operator=(SYS_TestRec const &other) {
  std::memmove(words, other.words, sizeof words);
  return *this;
}

void SYS_TestRepeater::Start() {}
void SYS_TestRepeater::Stop() {}
void SYS_TestRepeater::Record(SYS_TestFncID *function) { (void)function; }
void SYS_TestRepeater::FncRegister(SYS_TestFncID *function) { (void)function; }
void SYS_TestRepeater::FncProcess() {}
void SYS_TestRepeater::WriteRec() {}
