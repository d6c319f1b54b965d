#include <gtest/gtest.h>

#include "lut/default_lut.h"

TEST(DefaultLut, Placeholder) { SUCCEED(); }
