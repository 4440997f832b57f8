#include "FixedStringTest.h"

QTEST_APPLESS_MAIN(FixedStringTest)
