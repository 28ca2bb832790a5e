// The specialised span loops against the generic one: random states and random batches of every
// primitive must give the same pixels, aux values and counters, whichever loop the key selects.
#include <gtest/gtest.h>

#include <random>
#include <set>

#include "board_fixture.h"
#include "pixel/raster.h"
#include "pixel/spans_plain.h"

namespace zvb::test {
namespace {

struct Rng {
  std::mt19937 g;
  explicit Rng(unsigned seed) : g(seed) {}
  int pick(int n) { return static_cast<int>(g() % static_cast<unsigned>(n)); }
  bool chance(int percent) { return pick(100) < percent; }
  float uni(float lo, float hi) { return lo + (hi - lo) * static_cast<float>(g() & 0xFFFFFF) / 16777216.0f; }
};

const int kFunctions[] = {0x0, 0x1, 0x2, 0x3, 0x4, 0x5, 0x6, 0x7, 0x8, 0x9, 0x10};
const int kFactors[] = {0x0, 0x1, 0x2, 0x3, 0x4, 0x5, 0x8, 0x9, 0xA, 0xB, 0xC, 0xD};

// A random combine setting, biased towards the pass-through forms that have specialised loops.
void random_combine(Rng &r, bool alpha, PixelBoard &pb) {
  int fn, factor = GR_COMBINE_FACTOR_ONE, local = r.pick(alpha ? 3 : 2), other = r.pick(3), invert = 0;
  switch (r.pick(4)) {
    case 0: fn = GR_COMBINE_FUNCTION_SCALE_OTHER; other = r.chance(50) ? GR_COMBINE_OTHER_ITERATED : GR_COMBINE_OTHER_CONSTANT; break;
    case 1: fn = GR_COMBINE_FUNCTION_LOCAL; factor = GR_COMBINE_FACTOR_NONE; break;
    default: fn = kFunctions[r.pick(11)]; factor = kFactors[r.pick(12)]; invert = r.pick(2); break;
  }
  if (alpha) px_AlphaCombine(pb, fn, factor, local, other, invert);
  else px_ColorCombine(pb, fn, factor, local, other, invert);
}

void random_state(Rng &r, PixelBoard &pb) {
  random_combine(r, false, pb);
  random_combine(r, true, pb);
  px_ConstantColorValue(pb, r.g());
  const int blends[] = {0, 1, 2, 3, 4, 5, 6, 7, 0xF};
  if (r.chance(50)) px_AlphaBlendFunction(pb, GR_BLEND_ONE, GR_BLEND_ZERO, GR_BLEND_ONE, GR_BLEND_ZERO);
  else px_AlphaBlendFunction(pb, blends[r.pick(9)], blends[r.pick(9)], r.pick(2) ? 4 : 0, r.pick(2) ? 4 : 0);
  px_AlphaTestFunction(pb, r.chance(60) ? GR_CMP_ALWAYS : r.pick(8));
  px_AlphaTestReferenceValue(pb, static_cast<GrAlpha_t>(r.pick(256)));
  px_DepthBufferMode(pb, r.chance(30) ? GR_DEPTHBUFFER_DISABLE : r.pick(5));
  px_DepthBufferFunction(pb, r.chance(50) ? GR_CMP_LESS : r.pick(8));
  px_DepthBiasLevel(pb, static_cast<FxI16>(r.chance(50) ? 0 : r.pick(2000) - 1000));
  px_DepthMask(pb, r.pick(2));
  if (r.chance(25)) px_ColorMask(pb, r.chance(80), FXTRUE);  // alpha buffer when depth is off
  else px_ColorMask(pb, r.chance(90), FXFALSE);
  const int fogSources[] = {0, 1, 2, 3};
  const int mods[] = {0, 0, GR_FOG_MULT2, GR_FOG_ADD2, GR_FOG_MULT2 | GR_FOG_ADD2};
  px_FogMode(pb, r.chance(50) ? GR_FOG_DISABLE : fogSources[r.pick(4)] | mods[r.pick(5)]);
  px_FogColorValue(pb, r.g());
  GrFog_t table[64];
  for (auto &e : table) e = static_cast<GrFog_t>(r.pick(256));
  px_FogTable(pb, table);
  px_DitherMode(pb, r.pick(3));
  px_ChromakeyMode(pb, r.chance(20));
  px_ChromakeyValue(pb, r.chance(50) ? 0x00808080u : r.g());
  px_CullMode(pb, r.pick(3));
  px_ClipWindow(pb, r.pick(10), r.pick(10), 40 + r.pick(30), 30 + r.pick(30));
}

GrVertex random_vertex(Rng &r, bool flatKey) {
  GrVertex v = vtx(r.uni(-10, 74), r.uni(-10, 58), r.uni(-20, 275), r.uni(0, 255), r.uni(0, 255), r.uni(-20, 275),
                   r.uni(-1000, 70000), r.chance(10) ? r.uni(-0.1f, 2.0f) : r.uni(0.00001f, 1.0f));
  if (flatKey) v.r = v.g = v.b = 128;
  return v;
}

// Draws the same random batch with the key's own loops and with the generic loop forced.
void draw_batch(unsigned seed, PixelBoard &pb) {
  Rng r(seed);
  for (int i = 0; i < 40; ++i) {
    const bool flat = r.chance(20);
    GrVertex v[4] = {random_vertex(r, flat), random_vertex(r, flat), random_vertex(r, flat), random_vertex(r, flat)};
    switch (r.pick(8)) {
      case 0: px_DrawLine(pb, &v[0], &v[1]); break;
      case 1: px_DrawPoint(pb, &v[0]); break;
      case 2: px_AADrawTriangle(pb, &v[0], &v[1], &v[2], r.pick(2), r.pick(2), r.pick(2)); break;
      case 3: px_AADrawLine(pb, &v[0], &v[1]); break;
      case 4: px_DrawPolygonVertexList(pb, 4, v); break;
      default: px_DrawTriangle(pb, &v[0], &v[1], &v[2]); break;
    }
  }
}

// On every vector unit of the machine (the lean loops' scalar form first, the widest last).
TEST(Spans, SpecialisedLoopsMatchGenericLoop) {
  std::set<uint32_t> keys;
  const int widest = plain_force_simd(-1);
  for (int level = PLAIN_SCALAR; level <= widest; ++level) {
    for (unsigned seed = 1; seed <= 400; ++seed) {
      ASSERT_EQ(plain_force_simd(level), level);
      TestBoard fast(64, 48), generic(64, 48);
      for (TestBoard *tb : {&fast, &generic}) {
        Rng r(seed * 7919u);
        for (size_t i = 0; i < tb->buf[1].size(); ++i) {
          tb->buf[1][i] = static_cast<uint16_t>(r.g());
          tb->auxBuf[i] = static_cast<uint16_t>(r.g());
        }
        random_state(r, tb->pb);
      }
      generic.pb.derived.keyOverride = 1 + KEY_GENERIC;
      draw_batch(seed, fast.pb);
      draw_batch(seed, generic.pb);
      keys.insert(fast.pb.derived.key);
      ASSERT_EQ(fast.buf[1], generic.buf[1]) << "seed " << seed << " key " << fast.pb.derived.key;
      ASSERT_EQ(fast.auxBuf, generic.auxBuf) << "seed " << seed << " key " << fast.pb.derived.key;
      ASSERT_EQ(0, std::memcmp(&fast.pb.perf, &generic.pb.perf, sizeof(PerfCounters))) << "seed " << seed << " level " << level;
    }
  }
  plain_force_simd(-1);
  EXPECT_GE(keys.size(), 60u) << "the random states should reach many specialised loops";
}

// Every valid key has a loop of its own, and the generic key's loop is the fallback for the others.
TEST(Spans, TableCoversEveryValidKey) {
  int own = 0;
  for (uint32_t k = 0; k < KEY_COUNT; ++k) {
    const bool valid = ((k >> KEY_CC_SHIFT) & 3) != 3 && ((k >> KEY_AC_SHIFT) & 3) != 3;
    if (valid) {
      EXPECT_NE(span_function(k), nullptr);
      own += span_function(k) != span_function(KEY_GENERIC) || k == KEY_GENERIC;
    } else {
      EXPECT_EQ(span_function(k), span_function(KEY_GENERIC));
    }
  }
  EXPECT_EQ(own, 3 * 3 * 4 * 8);
}

}  // namespace
}  // namespace zvb::test
