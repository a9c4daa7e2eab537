#include "test_support.h"

int tovik_test::Counted::live = 0;
int tovik_test::Counted::copies = 0;
