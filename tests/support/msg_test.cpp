// The message channel (verbosity and flags from the environment, filtering, prefixes) and the
// mprintf channel (thresholds, cut, message box).
#include "support/env/env.h"
#include "support/msg/msg.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

// Starts the channel afresh under the given environment values (null: unset).
void restart_channel(const char *verbosity, const char *flags) {
  G_sys_setenv("G_ENV_MSG_VERBOSITY", verbosity);
  G_sys_setenv("G_ENV_MSG_FLAGS", flags);
  GP_msg_reset();
}

// The Windows runtime removes a variable set to the empty text, so the "set and empty" cases
// exist only where the runtime keeps empty values.
bool runtime_keeps_empty_values(const char *value) {
#if defined(_WIN32)
  return !value || value[0] != '\0';
#else
  (void)value;
  return true;
#endif
}

class MessageChannel : public testing::Test {
protected:
  void TearDown() override { restart_channel(nullptr, nullptr); }
};

TEST_F(MessageChannel, VerbosityWordsAndPrefixes) {
  struct Case {
    const char *value;
    int expected;
    bool complains;
  };
  const Case cases[] = {
      {nullptr, 2, false},          {"", 1, false},           {"sev_warning", 4, false},
      {"G_MSG_SEV_NONE", 0, false}, {"msg_sev_FATAL", 6, false}, {"INFO_DETAIL", 1, false},
      {"info_brief", 3, false},     {"Error", 5, false},      {"bogus", 2, true},
      // Only one prefix is stripped.
      {"SEV_SEV_INFO", 2, true},    {"G_MSG_SEV_", 2, true},
  };
  for (const Case &c : cases) {
    if (!runtime_keeps_empty_values(c.value)) continue;
    restart_channel(c.value, nullptr);
    CaptureStderr();
    int verbosity = -1;
    G_msg_inq_severity_verbosity(&verbosity);
    std::string complaint = GetCapturedStderr();
    EXPECT_EQ(verbosity, c.expected) << (c.value ? c.value : "(unset)");
    if (c.complains)
      EXPECT_EQ(complaint, std::string("Unrecognized value for environment variable: "
                                       "G_ENV_MSG_VERBOSITY = ") + c.value + "\n");
    else
      EXPECT_EQ(complaint, "") << c.value;
  }
}

TEST_F(MessageChannel, FlagWords) {
  struct Case {
    const char *value;
    unsigned expected;
  };
  const Case cases[] = {{nullptr, 0},          {"", 2},         {"force", 4},
                        {"FLAG_SUPPRESS_PREFIX", 2}, {"g_msg_flag_suppress_introduction", 1},
                        {"SUPPRESS_PREFIX FORCE", 0}};
  for (const Case &c : cases) {
    if (!runtime_keeps_empty_values(c.value)) continue;
    restart_channel(nullptr, c.value);
    CaptureStderr();
    unsigned flags = 99;
    GI_msg_inq_flags(&flags);
    GetCapturedStderr();
    EXPECT_EQ(flags, c.expected) << (c.value ? c.value : "(unset)");
  }
}

TEST_F(MessageChannel, FilteredReportStillUpdatesTheRecord) {
  restart_channel("WARNING", nullptr);
  CaptureStderr();
  EXPECT_EQ(G_msg_report(nullptr, G_MSG_SEV_INFO, 77, "quiet %d\n", 1), 0);
  EXPECT_EQ(GetCapturedStderr(), "");
  int severity = -1, status = -1, maximum = -1;
  G_msg_inq_severity_previous(&severity);
  G_msg_inq_status_code_previous(&status);
  G_msg_inq_severity_max(&maximum);
  EXPECT_EQ(severity, G_MSG_SEV_INFO);
  EXPECT_EQ(status, 77);
  EXPECT_EQ(maximum, G_MSG_SEV_INFO);

  CaptureStderr();
  int written = G_msg_report(nullptr, G_MSG_SEV_ERROR, 3, "loud %s\n", "text");
  EXPECT_EQ(GetCapturedStderr(), "Kestrel: loud text\n");
  EXPECT_EQ(written, static_cast<int>(strlen("Kestrel: loud text\n")));

  G_msg_report(nullptr, G_MSG_SEV_DETAIL, 4, "quiet\n");
  G_msg_inq_severity_max(&maximum);
  G_msg_inq_severity_previous(&severity);
  EXPECT_EQ(maximum, G_MSG_SEV_ERROR);
  EXPECT_EQ(severity, G_MSG_SEV_DETAIL);
}

TEST_F(MessageChannel, ForceAndPrefixSuppression) {
  restart_channel("FATAL", nullptr);
  CaptureStderr();
  GI_msg_report_flags(nullptr, G_MSG_SEV_DETAIL, 0, G_MSG_FLAG_FORCE, "forced\n");
  G_msg_report_cont(nullptr, G_MSG_SEV_FATAL, 0, "continued\n");
  EXPECT_EQ(GetCapturedStderr(), "Kestrel: forced\ncontinued\n");

  restart_channel(nullptr, "SUPPRESS_PREFIX");
  CaptureStderr();
  G_msg_report(nullptr, G_MSG_SEV_ERROR, 0, "bare\n");
  G_msg_user(nullptr, G_MSG_SEV_ERROR, 0, "tool", "also bare");
  EXPECT_EQ(GetCapturedStderr(), "bare\nalso bare\n\r");

  restart_channel(nullptr, nullptr);
  CaptureStderr();
  G_msg_user(nullptr, G_MSG_SEV_ERROR, 0, "tool", "value %d", 5);
  EXPECT_EQ(GetCapturedStderr(), "tool: value 5\n\r");
}

TEST_F(MessageChannel, PrefixCopyAndInquiry) {
  restart_channel(nullptr, nullptr);
  char buffer[16];
  int length = 0;
  EXPECT_EQ(G_msg_inq_prefix(sizeof buffer, &length, buffer), 0);
  EXPECT_STREQ(buffer, "Kestrel: ");
  EXPECT_EQ(length, 9);

  char text[] = "Abc: ";
  G_msg_set_prefix(text);
  text[0] = 'X'; // the channel keeps its own copy
  EXPECT_EQ(G_msg_inq_prefix(6, &length, buffer), 0);
  EXPECT_STREQ(buffer, "Abc: ");
  EXPECT_EQ(G_msg_inq_prefix(5, &length, buffer), -1);
  EXPECT_STREQ(buffer, "Abc:");
  EXPECT_EQ(length, 5);

  G_msg_set_prefix(nullptr);
  EXPECT_STREQ(GI_msg_prefix(), "");
  FILE *file = tmpfile();
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(G_msg_report(file, G_MSG_SEV_ERROR, 0, "%s\n", "x"), 2);
  fclose(file);
}

struct Popup {
  std::string title, text;
  unsigned style;
};
std::vector<Popup> popups;
void record_popup(const char *title, const char *text, unsigned style) {
  popups.push_back({title, text, style});
}

class Mprintf : public testing::Test {
protected:
  void SetUp() override {
    popups.clear();
    GP_mprint_set_popup_hook(record_popup);
  }
  void TearDown() override {
    GP_mprint_set_popup_hook(nullptr);
    mprint_set_sev_popup(80);
    mprint_set_sev_stderr(80);
  }
};

TEST_F(Mprintf, ThresholdsChooseStderrAndBox) {
  CaptureStderr();
  mprintf(160, "tracing %d", 1);
  EXPECT_EQ(GetCapturedStderr(), "");
  EXPECT_TRUE(popups.empty());

  CaptureStderr();
  mprintf(80, "failed %s", "here");
  EXPECT_EQ(GetCapturedStderr(), "failed here\n");
  ASSERT_EQ(popups.size(), 1u);
  EXPECT_EQ(popups[0].title, "Glide Redirector");
  EXPECT_EQ(popups[0].text, "failed here");
  EXPECT_EQ(popups[0].style, 0x10010u);

  mprintf(0, "severity zero");
  ASSERT_EQ(popups.size(), 2u);
  EXPECT_EQ(popups[1].style, 0x10040u);

  EXPECT_EQ(mprint_set_sev_popup(10), 80);
  CaptureStderr();
  mprintf(40, "misuse");
  EXPECT_EQ(GetCapturedStderr(), "misuse\n");
  EXPECT_EQ(popups.size(), 2u);
}

TEST_F(Mprintf, LongMessageIsCutAndStillEndsTheLine) {
  mprint_set_sev_popup(-1);
  std::string longText(5000, 'q');
  CaptureStderr();
  mprintf(80, "%s", longText.c_str());
  std::string out = GetCapturedStderr();
  EXPECT_EQ(out, std::string(3071, 'q') + "\n");
}

TEST_F(Mprintf, SystemTextOutlivesItsCallUntilPrinted) {
  mprint_set_sev_popup(-1);
  const char *first = sysmsg(2);
  const char *second = sysmsg(2);
  ASSERT_NE(first, nullptr);
  EXPECT_NE(first, second);
  EXPECT_GT(strlen(first), 0u);
  std::string expected = first;
  CaptureStderr();
  mprintf(80, "[%s]", first);
  EXPECT_EQ(GetCapturedStderr(), "[" + expected + "]\n");
}

} // namespace
