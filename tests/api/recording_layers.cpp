// Recording stand-ins for every layer function and wgl function, generated from the table
// of entries: each appends one LayerCall and returns zero.
#include "frames_under_test.h"

#include <cstring>
#include <type_traits>

std::vector<LayerCall> gLayerCalls;
bool gCompileDropsContext = false;

namespace {

// How many floats a GLfloat pointer argument of a layer holds: two texture coordinates for
// glTexCoord2fv, four for every other vector the frames build.
int float_count(const char* stem)
{
    return std::strcmp(stem, "TexCoord2fv") == 0 ? 2 : 4;
}

template <typename T>
void put(LayerCall& call, const char* stem, T value)
{
    if constexpr (std::is_arithmetic_v<T>) {
        call.values.push_back((double)value);
    } else if constexpr (std::is_same_v<T, const GLfloat*>) {
        if (value)
            for (int i = 0; i < float_count(stem); ++i)
                call.values.push_back(value[i]);
    }
}

template <typename R, typename... A>
R record(const char* layer, const char* stem, A... a)
{
    LayerCall call{layer, stem, {}};
    (put(call, stem, a), ...);
    gLayerCalls.push_back(call);
    if (gCompileDropsContext && std::strcmp(layer, "LC") == 0)
        vldGc = nullptr;
    if constexpr (!std::is_void_v<R>)
        return R{};
}

} // namespace

#define VLD_TEST_TAIL(...) __VA_OPT__(, ) __VA_ARGS__
#define VLD_TEST_FN_IM VLD_IM
#define VLD_TEST_FN_LC VLD_LC
#define VLD_TEST_FN_DO VLD_DO
#define VLD_GEN_LAYER(layer, ret, stem, params, args)                                          \
    ret VLD_TEST_FN_##layer(stem) params { return record<ret>(#layer, #stem VLD_TEST_TAIL args); }
#define VLD_GEN_WGL(ret, name, params, args)                                                   \
    extern "C" ret APIENTRY VLD_FRAME_NAME(name) params                                        \
    {                                                                                          \
        return record<ret>("WGL", #name VLD_TEST_TAIL args);                                   \
    }
#include "vld/api/vld_layers_gen.inc"
