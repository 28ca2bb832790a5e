// Settings from the environment: the four forms of a named value, and the start-up settings
// that the library keeps in vlddb for the rest of its run.
#include "vld/glide/vld_device.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "support/env/env.h"
#include "vld/api/vld_callees.h"
#include "vld/api/vld_export.h"
#include "vld/api/vld_frames.h"

namespace {

// One looked-up value, released when it goes out of scope. `value` is null when the name is
// not set anywhere.
struct vld_env_value {
    char* value = nullptr;
    int flags = 0;

    explicit vld_env_value(const char* name) { G_sys_inq_env(name, &value, &flags); }
    ~vld_env_value() { G_sys_free_env_value(&value, flags); }
    vld_env_value(const vld_env_value&) = delete;
    vld_env_value& operator=(const vld_env_value&) = delete;

    bool set() const { return value != nullptr; }
    bool empty() const { return !value || value[0] == '\0'; }
};

} // namespace

// A flag: unset gives the caller's default; a set value is on unless it starts with '0', so
// that the empty value is on.
int KSP_vld_env_flag(const char* name, int unsetValue)
{
    vld_env_value v(name);
    if (!v.set())
        return unsetValue;
    return v.value[0] != '0';
}

// An integer as atoi reads it; unset or empty gives the default.
int KSP_vld_env_int(const char* name, int defaultValue)
{
    vld_env_value v(name);
    return v.empty() ? defaultValue : std::atoi(v.value);
}

// A float as atof reads it; unset or empty gives the default.
float KSP_vld_env_float(const char* name, float defaultValue)
{
    vld_env_value v(name);
    return v.empty() ? defaultValue : (float)std::atof(v.value);
}

// The text of a setting, cut to the buffer; 1 when set (also when empty), 0 when unset, and
// then the buffer holds the empty text.
int KSP_vld_env_text(const char* name, char* buffer, int size)
{
    if (buffer && size > 0)
        buffer[0] = '\0';
    vld_env_value v(name);
    if (!v.set())
        return 0;
    if (buffer && size > 0)
        std::snprintf(buffer, (size_t)size, "%s", v.value);
    return 1;
}

// Reads the start-up settings, in their fixed order, into vlddb. Nothing is validated: a
// malformed number reads as atoi or atof make it.
void KSL_vld_init_from_env()
{
    vld_settings& s = vlddb.settings;
    s.verbosity = KSP_vld_env_int("VELDRA_VERBOSITY", 1);
    s.lodBlend = KSP_vld_env_flag("KS_ENV_TEXTURE_LOD_BLEND", 1);
    s.textureMipmap = KSP_vld_env_flag("KS_ENV_TEXTURE_MIPMAP", 1);
    {
        vld_env_value pooling("KS_ENV_VLD_VERTEX_POOLING");
        s.vertexPoolingOff = pooling.set() && pooling.value[0] == '0';
    }
    s.singleBuffer = KSP_vld_env_flag("KS_ENV_SINGLE_BUFFER", 0);
    s.mipmapDither = KSP_vld_env_flag("KS_ENV_MIPMAP_DITHER", 0);
    s.specularDisable = KSP_vld_env_flag("KS_ENV_SPECULAR_DISABLE", 0);
    s.detailViaIa = KSP_vld_env_flag("KS_ENV_VLD_DETAIL_VIA_IA", 1);
    s.oneTmuEach = KSP_vld_env_int("KS_ENV_TEXTURE_ONE_TMU_EACH", 0);
    if (s.oneTmuEach) {
        std::fprintf(stderr, "KSL_vld_init_from_env: textures forced to reside in a single TMU each\n");
        if (s.oneTmuEach == 2)
            std::fprintf(stderr, "KSL_vld_init_from_env:     however, tri-linear still allowed\n");
        std::fflush(stderr);
    }
    s.gamma = KSP_vld_env_float("KS_ENV_GAMMA", 0.0f);
    s.fastPath = KSP_vld_env_int("KS_ENV_VLD_FAST_PATH", 1);
    s.txrOowScale = KSP_vld_env_float("KS_ENV_VLD_TXR_OOW_SCALE", -1.0f);
    // The SSE setting is only looked at when the processor and the system can run SSE code.
    vlddb.useSse = KSP_vld_sse_inq_support() ? KSP_vld_env_int("KS_ENV_VLD_SSE", 1) != 0 : 0;
    s.polygonOffsetR = KSP_vld_env_float("KS_ENV_VLD_POLYGON_OFFSET_R", 140.0f);
    s.texLodBias = KSP_vld_env_float("KS_ENV_VLD_TEX_LOD_BIAS", 0.0f);
}

// The application's way to hand settings to the library before start-up: the value goes to
// the process environment (and to every other copy of the library in the process).
VLD_EXPORT int VLD_APIENTRY vldSetEnvVELD(const char* name, const char* value)
{
    if (!name || !name[0])
        return -1;
    return G_sys_setenv(name, value);
}
