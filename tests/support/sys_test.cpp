// Version and OS texts, the sequence number, case-blind compares, critical sections.
#include "support/mt/mt.h"
#include "support/sys/sys.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

TEST(Version, FullTextAndMajorMinor) {
  char buffer[32];
  memset(buffer, 'x', sizeof buffer);
  KS_sys_inq_version(buffer);
  EXPECT_STREQ(buffer, "4.3-build161");
  KSI_sys_inq_version_major_minor(buffer);
  EXPECT_STREQ(buffer, "4.3");
}

TEST(OsString, TooSmallBufferIsUntouched) {
  char buffer[128];
  memset(buffer, '#', sizeof buffer);
  EXPECT_EQ(KSI_sys_inq_os_string(79, buffer, 0), -1);
  EXPECT_EQ(KSI_sys_inq_os_string(79, buffer, 1), -1);
  for (char c : buffer) ASSERT_EQ(c, '#');
}

TEST(OsString, LongFormExtendsTheShortForm) {
  char shortText[80], longText[128];
  ASSERT_EQ(KSI_sys_inq_os_string(80, shortText, 1), 0);
  ASSERT_EQ(KSI_sys_inq_os_string(sizeof longText, longText, 0), 0);
#if defined(_WIN32)
  EXPECT_STREQ(shortText, "WinNT");
#else
  EXPECT_GT(strlen(shortText), 0u);
#endif
  std::string full = longText;
  EXPECT_EQ(full.rfind(std::string(shortText) + " ", 0), 0u);
  EXPECT_NE(full.find(" build "), std::string::npos);
}

TEST(OsString, FormatTrimsTheExtraAndChecksTheSize) {
  GP_sys_os_info info{};
  info.word = "WinNT";
  info.major = 5;
  info.minor = 1;
  info.build = 2600;
  strcpy(info.extra, "  Service Pack 3 ");
  char buffer[200];
  ASSERT_EQ(GP_sys_format_os_string(&info, 0, sizeof buffer, buffer, 0), 0);
  EXPECT_STREQ(buffer, "WinNT 5.1 build 2600 Service Pack 3");
  strcpy(info.extra, "   ");
  ASSERT_EQ(GP_sys_format_os_string(&info, 0, sizeof buffer, buffer, 0), 0);
  EXPECT_STREQ(buffer, "WinNT 5.1 build 2600");
  memset(info.extra, 'p', 100);
  info.extra[100] = '\0';
  EXPECT_EQ(GP_sys_format_os_string(&info, 0, 80, buffer, 0), -1);
  EXPECT_EQ(GP_sys_format_os_string(&info, -1, 80, buffer, 0), -1);
  EXPECT_STREQ(buffer, "WinNT");
}

TEST(Strings, CaseBlindCompares) {
  EXPECT_EQ(G_strncasecmp("ABc", "abd", 2), 0);
  EXPECT_EQ(G_strncasecmp("ABc", "abd", 3), -1);
  EXPECT_EQ(G_strncasecmp("x", "y", 0), 0);
  EXPECT_EQ(G_strcasecmp("Glide", "gLIDE"), 0);
  EXPECT_EQ(G_strcasecmp("abc", "ab"), 1);
  EXPECT_EQ(G_strcasecmp("ab", "abc"), -1);
  // Bytes compare signed: a byte above 0x7F sorts before ASCII.
  EXPECT_EQ(G_strcasecmp("\xC0", "a"), -1);
}

TEST(Sequence, NumbersStartAtOneAndRise) {
  int first = 0, second = 0;
  KSI_assign_sequence_number(&first);
  KSI_assign_sequence_number(&second);
  EXPECT_GE(first, 1);
  EXPECT_EQ(second, first + 1);
}

TEST(CriticalSection, OwnerMayEnterAgain) {
  GI_mt_critical_section section;
  GI_mt_critical_section_init(&section);
  GI_mt_critical_section_enter(&section);
  GI_mt_critical_section_enter(&section);
  GI_mt_critical_section_leave(&section);
  GI_mt_critical_section_leave(&section);
  GI_mt_critical_section_delete(&section);
  volatile long counter = 5;
  EXPECT_EQ(GI_mt_InterlockedIncrement(&counter), 6);
  EXPECT_EQ(GI_mt_InterlockedDecrement(&counter), 5);
  EXPECT_EQ(GI_mt_InterlockedExchange(&counter, 42), 5);
  EXPECT_EQ(counter, 42);
}

} // namespace
