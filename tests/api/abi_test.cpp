// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstddef>

#include "quarnel/cctapi.h"

extern "C" {
std::size_t CHeaderContextSize(void);
std::size_t CHeaderOutIgclOffset(void);
std::size_t CHeaderPostGammaOffset(void);
}

TEST(PublicHeader, CAndCppSeeTheSameRecord) {
    EXPECT_EQ(CHeaderContextSize(), sizeof(CctContext));
    EXPECT_EQ(CHeaderOutIgclOffset(), offsetof(CctContext, outIgcl));
    EXPECT_EQ(CHeaderPostGammaOffset(), offsetof(CctContext, outNvPostGamma));
    EXPECT_EQ(sizeof(CctContext), 35728u);
}
