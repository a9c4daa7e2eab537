// Selects, for the life of a test scope, a process locale whose decimal
// separator is a comma, and restores the one before it, so that a test can
// show that number text ignores the process locale. .ci/install-deps makes
// de_DE.UTF-8 where the machine has no such locale. Without one, active is
// false and the test should skip; with TOVIK_REQUIRE_COMMA_LOCALE set in the
// environment (as .ci/run sets it) a missing locale is a failure as well.
#ifndef TOVIK_TEST_COMMA_LOCALE_H
#define TOVIK_TEST_COMMA_LOCALE_H

#include <clocale>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

namespace tovik_test {

class CommaDecimalLocale {
 public:
  // category: LC_NUMERIC, or LC_ALL to switch the whole locale.
  explicit CommaDecimalLocale(int category = LC_ALL) : category(category) {
    char const *const now = std::setlocale(category, nullptr);
    saved = now != nullptr ? now : "C";
    for (char const *name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8", "nl_NL.UTF-8",
                             "nl_NL.utf8", "it_IT.UTF-8", "it_IT.utf8", "es_ES.UTF-8", "es_ES.utf8"}) {
      if (std::setlocale(category, name) != nullptr && *std::localeconv()->decimal_point == ',') {
        active = true;
        return;
      }
    }
    std::setlocale(category, saved.c_str());
    if (std::getenv("TOVIK_REQUIRE_COMMA_LOCALE") != nullptr) {
      ADD_FAILURE() << "no locale with a decimal comma; run .ci/install-deps";
    }
  }
  ~CommaDecimalLocale() { std::setlocale(category, saved.c_str()); }
  CommaDecimalLocale(CommaDecimalLocale const &) = delete;
  CommaDecimalLocale &operator=(CommaDecimalLocale const &) = delete;

  bool active = false;

 private:
  int category;
  std::string saved;
};

}  // namespace tovik_test

#endif  // TOVIK_TEST_COMMA_LOCALE_H
