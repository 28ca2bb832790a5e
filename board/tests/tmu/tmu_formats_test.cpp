#include "tmu/tmu.h"
#include <gtest/gtest.h>
TEST(TmuFormats, Placeholder) {}
