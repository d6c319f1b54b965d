#include <gtest/gtest.h>

#include "diag/trace.h"

TEST(Trace, Placeholder) { SUCCEED(); }
