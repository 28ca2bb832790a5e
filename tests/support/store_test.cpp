// Look-ups that fall through to the per-machine store: the process environment wins, numbers
// read as decimal text, the three keys are searched once in their order, a missing store costs
// one pass. Runs against the real registry under Windows.
#include "store_helper.h"
#include "support/env/env.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

class Store : public testing::Test {
protected:
  void SetUp() override {
    store_clear();
    GP_sys_env_reset();
  }
  void TearDown() override {
    store_clear();
    GP_sys_env_reset();
  }
};

TEST_F(Store, ProcessEnvironmentWinsOverTheStore) {
  store_put_text("4.3", "ZVGLT_BOTH", "from store");
  G_sys_setenv("ZVGLT_BOTH", "from env");
  char *value = nullptr;
  int flags = -1;
  G_sys_inq_env("ZVGLT_BOTH", &value, &flags);
  EXPECT_STREQ(value, "from env");
  EXPECT_EQ(flags, 2);

  G_sys_setenv("ZVGLT_BOTH", nullptr);
  G_sys_inq_env("ZVGLT_BOTH", &value, &flags);
  ASSERT_NE(value, nullptr);
  EXPECT_STREQ(value, "from store");
  EXPECT_EQ(flags, 5);
  G_sys_free_env_value(&value, flags);
  EXPECT_EQ(value, nullptr);

  G_sys_inq_env("ZVGLT_ABSENT", &value, &flags);
  EXPECT_EQ(value, nullptr);
  EXPECT_EQ(flags, 0);
}

TEST_F(Store, NumbersReadAsDecimalText) {
  store_put_number("4.3", "ZVGLT_NUMBER", 16);
  store_put_number("4.3", "ZVGLT_ALLBITS", 0xFFFFFFFFu);
  char *value = nullptr;
  int flags = 0;
  G_sys_inq_env("ZVGLT_NUMBER", &value, &flags);
  EXPECT_STREQ(value, "16");
  G_sys_free_env_value(&value, flags);
  G_sys_inq_env("ZVGLT_ALLBITS", &value, &flags);
  EXPECT_STREQ(value, "-1");
  G_sys_free_env_value(&value, flags);
}

TEST_F(Store, KeysAreSearchedInOrderAndTheFirstIsKept) {
  store_put_text("4.2", "ZVGLT_WHERE", "old");
  store_put_text("", "ZVGLT_WHERE", "unversioned");
  char *value = G_sys_getenv("ZVGLT_WHERE");
  EXPECT_STREQ(value, "unversioned");
  free(value);

  // The key found first stays the one used, even when a better one appears later.
  store_put_text("4.3", "ZVGLT_WHERE", "current");
  value = G_sys_getenv("ZVGLT_WHERE");
  EXPECT_STREQ(value, "unversioned");
  free(value);

  GP_sys_env_reset();
  value = G_sys_getenv("ZVGLT_WHERE");
  EXPECT_STREQ(value, "current");
  free(value);

  // A name missing from the chosen key is missing: other keys are not consulted.
  store_put_text("4.2", "ZVGLT_ONLY_OLD", "x");
  EXPECT_EQ(G_sys_getenv("ZVGLT_ONLY_OLD"), nullptr);
}

TEST_F(Store, WithoutAnyKeyOnePassServesEveryLookUp) {
  for (int i = 0; i < 1000; ++i) EXPECT_EQ(G_sys_getenv("ZVGLT_NOWHERE"), nullptr);
  EXPECT_EQ(GP_sys_env_store_open_count(), 3);
  // A key created afterwards is not seen: the search does not run twice.
  store_put_text("4.3", "ZVGLT_NOWHERE", "late");
  EXPECT_EQ(G_sys_getenv("ZVGLT_NOWHERE"), nullptr);
  EXPECT_EQ(GP_sys_env_store_open_count(), 3);
}

TEST_F(Store, AFoundKeyIsReopenedForEachLookUp) {
  store_put_text("4.2", "ZVGLT_OLD", "v");
  for (int i = 0; i < 5; ++i) {
    char *value = G_sys_getenv("ZVGLT_OLD");
    EXPECT_STREQ(value, "v");
    free(value);
  }
  EXPECT_EQ(GP_sys_env_store_open_count(), 3 + 4);
}

} // namespace
