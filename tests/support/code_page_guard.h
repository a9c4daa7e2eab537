// Selects a process code page for the life of a test scope and restores the
// one before it, so a failing test cannot leave another on the wrong page.
#ifndef TOVIK_TEST_CODE_PAGE_GUARD_H
#define TOVIK_TEST_CODE_PAGE_GUARD_H

#include "mbtext.h"

namespace tovik_test {

class CodePageGuard {
 public:
  explicit CodePageGuard(tovik::mb::CodePage page) : previous(tovik::mb::GetCodePage()) {
    tovik::mb::SetCodePage(page);
  }
  ~CodePageGuard() { tovik::mb::SetCodePage(previous); }
  CodePageGuard(CodePageGuard const &) = delete;
  CodePageGuard &operator=(CodePageGuard const &) = delete;

 private:
  tovik::mb::CodePage previous;
};

}  // namespace tovik_test

#endif  // TOVIK_TEST_CODE_PAGE_GUARD_H
