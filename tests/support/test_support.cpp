#include "test_support.h"

namespace tovik_test {
int Counted::live = 0;
int Counted::copies = 0;
int Counted::destructions = 0;
}  // namespace tovik_test
