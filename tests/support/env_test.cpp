// Writing the environment: the runtime sees the value, a repeated value is not handed over
// again, counted lengths, removal and wildcard removal.
#include "support/env/env.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace {

TEST(Environment, SetValueIsReadBackFromTheProcess) {
  ASSERT_EQ(G_sys_setenv("ZVGLT_PLAIN", "alpha"), 0);
  char *value = nullptr;
  int flags = -1;
  G_sys_inq_env("ZVGLT_PLAIN", &value, &flags);
  ASSERT_NE(value, nullptr);
  EXPECT_STREQ(value, "alpha");
  EXPECT_EQ(flags, G_SYS_ENV_FROM_PROCESS);
  char *kept = value;
  G_sys_free_env_value(&value, flags);
  EXPECT_EQ(value, kept); // the runtime's text is not ours to free
  EXPECT_STREQ(G_sys_getenv("ZVGLT_PLAIN"), "alpha");

  G_sys_setenv("ZVGLT_PLAIN", nullptr);
  EXPECT_EQ(getenv("ZVGLT_PLAIN"), nullptr);
}

TEST(Environment, SameValueTwiceIsHandedOverOnce) {
  GP_sys_env_reset();
  G_sys_setenv("ZVGLT_TWICE", "one");
  int afterFirst = GP_sys_env_putenv_count();
  G_sys_setenv("ZVGLT_TWICE", "one");
  EXPECT_EQ(GP_sys_env_putenv_count(), afterFirst);
  G_sys_setenv("ZVGLT_TWICE", "two");
  EXPECT_EQ(GP_sys_env_putenv_count(), afterFirst + 1);
  EXPECT_STREQ(getenv("ZVGLT_TWICE"), "two");
  // A prefix of the stored value is a different value.
  G_sys_setenv("ZVGLT_TWICE", "tw");
  EXPECT_STREQ(getenv("ZVGLT_TWICE"), "tw");
  G_sys_setenv("ZVGLT_TWICE", nullptr);
}

TEST(Environment, CountedLengthsCutNameAndValue) {
  EXPECT_EQ(GP_sys_setenv_counted(9, "ZVGLT_CUTxyz", 3, "abcdef"), 0);
  EXPECT_STREQ(getenv("ZVGLT_CUT"), "abc");
  GP_sys_unsetenv_full("ZVGLT_CUT", 0, 0);
  EXPECT_EQ(getenv("ZVGLT_CUT"), nullptr);
  EXPECT_EQ(GP_sys_unsetenv_full("", 1, 0), 0);
}

TEST(Environment, WildcardRemovesEveryNameWithTheStem) {
  G_sys_setenv("ZVGLT_WILD_A", "1");
  G_sys_setenv("ZVGLT_WILD_B", "2");
  G_sys_setenv("ZVGLT_OTHER", "3");
  testing::internal::CaptureStdout();
  EXPECT_EQ(GP_sys_unsetenv_full("ZVGLT_WILD_*", 1, 1), 2);
  std::string said = testing::internal::GetCapturedStdout();
  EXPECT_NE(said.find("    removing environment variable \"ZVGLT_WILD_A\"\n"), std::string::npos);
  EXPECT_NE(said.find("removed a total of 2 environment variables\n"), std::string::npos);
  EXPECT_EQ(getenv("ZVGLT_WILD_A"), nullptr);
  EXPECT_EQ(getenv("ZVGLT_WILD_B"), nullptr);
  EXPECT_STREQ(getenv("ZVGLT_OTHER"), "3");
  // Without the wildcard flag the star is part of the name.
  EXPECT_EQ(GP_sys_unsetenv_full("ZVGLT_OTHER*", 0, 0), 0);
  EXPECT_STREQ(getenv("ZVGLT_OTHER"), "3");
  G_sys_setenv("ZVGLT_OTHER", nullptr);
}

} // namespace
