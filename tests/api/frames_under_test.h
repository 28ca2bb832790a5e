// The entry frames built a second time under the names vldtest_<name>, in front of recording
// layers vldtest_im_ / vldtest_lc_ / vldtest_do_ and recording wgl functions: a test calls a
// frame and reads which layer functions ran, in which order, with which values.
#pragma once

#define VLD_FRAME_NAME(name) vldtest_##name
#define VLD_IM(impl) vldtest_im_##impl
#define VLD_LC(impl) vldtest_lc_##impl
#define VLD_DO(impl) vldtest_do_##impl

#include <string>
#include <vector>

#include "vld/api/vld_frames.h"

// One call of a recording layer: "IM", "LC", "DO" or "WGL", the stem (or wgl name), and the
// arithmetic arguments, with the floats that a GLfloat pointer argument points to.
struct LayerCall {
    std::string layer;
    std::string stem;
    std::vector<double> values;

    std::string key() const { return layer + ":" + stem; }
};

extern std::vector<LayerCall> gLayerCalls;
// When set, a list-compile layer makes no context current, as a layer might.
extern bool gCompileDropsContext;
