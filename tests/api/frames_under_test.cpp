// The library's own frame source, built under test names (see frames_under_test.h).
#include "frames_under_test.h"

#include "vld/api/vld_frames.cpp"
