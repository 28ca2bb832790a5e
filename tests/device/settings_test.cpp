// Settings from the environment: the forms of a value and the start-up settings.
#include "device_test.h"

#include "vld/api/vld_callees.h"


namespace {

using SettingsTest = DeviceTest;
constexpr const char* kName = "ZVGL_DEVICE_TEST_VALUE";

// A flag keeps its default only while unset; any set value is on unless it starts with '0'.
TEST_F(SettingsTest, FlagForms)
{
    EXPECT_EQ(KSP_vld_env_flag(kName, 0), 0);
    EXPECT_EQ(KSP_vld_env_flag(kName, 1), 1);
    if (kEmptySettingsExist) {
        setting(kName, "");
        EXPECT_EQ(KSP_vld_env_flag(kName, 0), 1) << "the empty value is on";
    }
    setting(kName, "0");
    EXPECT_EQ(KSP_vld_env_flag(kName, 1), 0);
    setting(kName, "0yes");
    EXPECT_EQ(KSP_vld_env_flag(kName, 1), 0) << "only the first character counts";
    setting(kName, "no");
    EXPECT_EQ(KSP_vld_env_flag(kName, 0), 1) << "anything but a leading '0' is on";
}

// Numbers read as atoi and atof read them; unset and empty give the default.
TEST_F(SettingsTest, NumberForms)
{
    EXPECT_EQ(KSP_vld_env_int(kName, 7), 7);
    EXPECT_FLOAT_EQ(KSP_vld_env_float(kName, -1.0f), -1.0f);
    setting(kName, "");
    EXPECT_EQ(KSP_vld_env_int(kName, 7), 7);
    EXPECT_FLOAT_EQ(KSP_vld_env_float(kName, 2.5f), 2.5f);
    setting(kName, "12abc");
    EXPECT_EQ(KSP_vld_env_int(kName, 7), 12);
    setting(kName, "abc");
    EXPECT_EQ(KSP_vld_env_int(kName, 7), 0) << "a malformed number reads as atoi makes it";
    setting(kName, "1.75");
    EXPECT_FLOAT_EQ(KSP_vld_env_float(kName, 0.0f), 1.75f);
}

// A text setting tells set from unset, the empty value counting as set, and never overruns.
TEST_F(SettingsTest, TextForm)
{
    char buffer[6] = "xxxxx";
    EXPECT_EQ(KSP_vld_env_text(kName, buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "");
    if (kEmptySettingsExist) {
        setting(kName, "");
        EXPECT_EQ(KSP_vld_env_text(kName, buffer, sizeof buffer), 1);
        EXPECT_STREQ(buffer, "");
    }
    setting(kName, "800x600");
    EXPECT_EQ(KSP_vld_env_text(kName, buffer, sizeof buffer), 1);
    EXPECT_STREQ(buffer, "800x6");
}

// With nothing set, every start-up setting takes its default.
TEST_F(SettingsTest, StartupDefaults)
{
    std::memset((void*)&vlddb.settings, 0x55, sizeof vlddb.settings);
    KSL_vld_init_from_env();
    const vld_settings& s = vlddb.settings;
    EXPECT_EQ(s.verbosity, 1);
    EXPECT_EQ(s.lodBlend, 1);
    EXPECT_EQ(s.textureMipmap, 1);
    EXPECT_EQ(s.vertexPoolingOff, 0);
    EXPECT_EQ(s.singleBuffer, 0);
    EXPECT_EQ(s.mipmapDither, 0);
    EXPECT_EQ(s.specularDisable, 0);
    EXPECT_EQ(s.detailViaIa, 1);
    EXPECT_EQ(s.oneTmuEach, 0);
    EXPECT_EQ(s.gamma, 0.0f);
    EXPECT_EQ(s.fastPath, 1);
    EXPECT_EQ(s.txrOowScale, -1.0f);
    EXPECT_EQ(s.polygonOffsetR, 140.0f);
    EXPECT_EQ(s.texLodBias, 0.0f);
    EXPECT_EQ(vlddb.useSse, KSP_vld_sse_inq_support());
}

// The empty value of an on-flag and of an off-flag is on; the empty verbosity is the default;
// vertex pooling is switched off by a leading '0' only.
TEST_F(SettingsTest, StartupEmptyValuesAndPooling)
{
    setting("KS_ENV_TEXTURE_MIPMAP", "");
    setting("KS_ENV_SINGLE_BUFFER", "");
    setting("VELDRA_VERBOSITY", "");
    setting("KS_ENV_VLD_VERTEX_POOLING", "1");
    KSL_vld_init_from_env();
    EXPECT_EQ(vlddb.settings.textureMipmap, 1);
    EXPECT_EQ(vlddb.settings.singleBuffer, kEmptySettingsExist ? 1 : 0);
    EXPECT_EQ(vlddb.settings.verbosity, 1);
    EXPECT_EQ(vlddb.settings.vertexPoolingOff, 0);

    setting("KS_ENV_VLD_VERTEX_POOLING", "0");
    setting("KS_ENV_TEXTURE_MIPMAP", "0");
    setting("VELDRA_VERBOSITY", "-3");
    KSL_vld_init_from_env();
    EXPECT_EQ(vlddb.settings.vertexPoolingOff, 1);
    EXPECT_EQ(vlddb.settings.textureMipmap, 0);
    EXPECT_EQ(vlddb.settings.verbosity, -3);

    setting("KS_ENV_VLD_VERTEX_POOLING", "");
    KSL_vld_init_from_env();
    EXPECT_EQ(vlddb.settings.vertexPoolingOff, 0);
}

// Numbers of the start-up table, and the SSE switch where the processor has SSE.
TEST_F(SettingsTest, StartupNumbers)
{
    setting("KS_ENV_GAMMA", "1.5");
    setting("KS_ENV_VLD_TXR_OOW_SCALE", "0.25");
    setting("KS_ENV_VLD_POLYGON_OFFSET_R", "");
    setting("KS_ENV_VLD_FAST_PATH", "0");
    setting("KS_ENV_VLD_SSE", "0");
    KSL_vld_init_from_env();
    EXPECT_FLOAT_EQ(vlddb.settings.gamma, 1.5f);
    EXPECT_FLOAT_EQ(vlddb.settings.txrOowScale, 0.25f);
    EXPECT_FLOAT_EQ(vlddb.settings.polygonOffsetR, 140.0f);
    EXPECT_EQ(vlddb.settings.fastPath, 0);
    EXPECT_EQ(vlddb.useSse, 0);

    setting("KS_ENV_VLD_SSE", "");
    KSL_vld_init_from_env();
    EXPECT_EQ(vlddb.useSse, KSP_vld_sse_inq_support()) << "empty means on where SSE runs";
}

#if defined(__x86_64__)
TEST_F(SettingsTest, SseIsAlwaysThereOnX8664)
{
    EXPECT_EQ(KSP_vld_sse_inq_support(), 1);
}
#endif

// One texture unit per texture is told on standard error, with a second line for 2.
TEST_F(SettingsTest, OneTmuEachMessages)
{
    setting("KS_ENV_TEXTURE_ONE_TMU_EACH", "2");
    testing::internal::CaptureStderr();
    KSL_vld_init_from_env();
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(vlddb.settings.oneTmuEach, 2);
    EXPECT_EQ(err, "KSL_vld_init_from_env: textures forced to reside in a single TMU each\n"
                   "KSL_vld_init_from_env:     however, tri-linear still allowed\n");

    setting("KS_ENV_TEXTURE_ONE_TMU_EACH", "1");
    testing::internal::CaptureStderr();
    KSL_vld_init_from_env();
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "KSL_vld_init_from_env: textures forced to reside in a single TMU each\n");
}

// vldSetEnvVELD hands a value to the library's own look-up; a null value removes it.
TEST_F(SettingsTest, SetEnvReachesTheLookUp)
{
    EXPECT_EQ(vldSetEnvVELD(kName, "42"), 0);
    EXPECT_EQ(KSP_vld_env_int(kName, 0), 42);
    EXPECT_EQ(vldSetEnvVELD(kName, nullptr), 0);
    EXPECT_EQ(KSP_vld_env_int(kName, 5), 5);
    EXPECT_EQ(vldSetEnvVELD(nullptr, "1"), -1);
}

} // namespace
