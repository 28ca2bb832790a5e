// The raster state machine through the whole path: blending, alpha test, the w-buffer depth
// test, table fog, scissored and partial clears, polygon offset. Each scene is compared
// exactly with its golden picture and, where the library follows standard OpenGL, with
// Mesa's, within the tolerance each test states.
#include <gtest/gtest.h>

#include "image_check.h"
#include "scene_kit.h"

namespace {

// Flat colours: the board's RGB565 with its 4x4 dither moves a channel by up to about 10 from
// Mesa's 8-bit value; nothing else differs, so no pixel away from an edge may differ more.
const MesaCheck kFlatCheck{{12, 0.0}, 40, nullptr};

// A window-aligned rectangle in pixels under an orthographic projection of the frame.
void rect(const GlTable& gl, float x0, float y0, float x1, float y1)
{
    gl.Begin(GL_TRIANGLES);
    gl.Vertex2f(x0, y0), gl.Vertex2f(x1, y0), gl.Vertex2f(x1, y1);
    gl.Vertex2f(x0, y0), gl.Vertex2f(x1, y1), gl.Vertex2f(x0, y1);
    gl.End();
}

// Pixel coordinates for the frame: one unit is one pixel, origin at the lower left.
void pixelProjection(const GlTable& gl)
{
    gl.Viewport(0, 0, kFrameWidth, kFrameHeight);
    gl.MatrixMode(GL_PROJECTION);
    gl.LoadIdentity();
    gl.Ortho(0.0, kFrameWidth, 0.0, kFrameHeight, -1.0, 1.0);
    gl.MatrixMode(GL_MODELVIEW);
    gl.LoadIdentity();
}

// The blend factors the library accepts, in grid order: sources are the rows, destinations
// the columns.
const GLenum kBlendSources[] = {GL_ZERO, GL_ONE, GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_DST_ALPHA,
                                GL_ONE_MINUS_DST_ALPHA, GL_DST_COLOR, GL_ONE_MINUS_DST_COLOR,
                                GL_SRC_ALPHA_SATURATE};
const GLenum kBlendDestinations[] = {GL_ZERO, GL_ONE, GL_SRC_COLOR, GL_ONE_MINUS_SRC_COLOR, GL_SRC_ALPHA,
                                     GL_ONE_MINUS_SRC_ALPHA, GL_DST_ALPHA, GL_ONE_MINUS_DST_ALPHA,
                                     GL_DST_COLOR, GL_ONE_MINUS_DST_COLOR, GL_SRC_ALPHA_SATURATE};
constexpr int kCellWidth = 14;
constexpr int kCellHeight = 17;

// Whether a factor pair blends as in standard OpenGL on this board. The board has no
// destination alpha (its aux buffer holds depth), so the library maps GL_DST_ALPHA to one
// and GL_ONE_MINUS_DST_ALPHA to zero, which is what standard blending gives over a
// destination of alpha 1, as here. Held against the golden file only: GL_SRC_COLOR and
// GL_ONE_MINUS_SRC_COLOR as destination (the library's table maps them to
// one-minus-source-alpha and to one), GL_SRC_ALPHA_SATURATE either way (one without
// destination alpha), and GL_DST_COLOR, GL_ONE_MINUS_DST_COLOR as destination (not
// destination factors in OpenGL 1.1).
bool blendsAsStandard(GLenum src, GLenum dst)
{
    if (src == GL_SRC_ALPHA_SATURATE)
        return false;
    return dst != GL_SRC_COLOR && dst != GL_ONE_MINUS_SRC_COLOR && dst != GL_SRC_ALPHA_SATURATE &&
           dst != GL_DST_COLOR && dst != GL_ONE_MINUS_DST_COLOR;
}

// Every accepted source and destination pair, one cell each: a blue-grey background of
// alpha 1, and over it an orange square of alpha 0.4 blended with the cell's pair.
//
// Tolerance: 20 a channel, no pixel beyond. The board reads the destination back from
// RGB565 (an error of up to 7 before blending) and dithers the result again.
TEST(StateImages, BlendingWithEveryAcceptedFactorPair)
{
    MesaCheck check{{20, 0.0}, 40, nullptr};
    check.minCompared = 0.1;
    check.exclude = [](PixelMask& mask) {
        for (int row = 0; row < 9; ++row)
            for (int col = 0; col < 11; ++col)
                if (!blendsAsStandard(kBlendSources[row], kBlendDestinations[col])) {
                    int top = kFrameHeight - (row + 1) * kCellHeight;
                    dropRect(mask, col * kCellWidth, top, (col + 1) * kCellWidth, top + kCellHeight);
                }
        // The strip above the grid and the column to its right hold only background.
        dropRect(mask, 0, 0, kFrameWidth, kFrameHeight - 9 * kCellHeight);
        dropRect(mask, 11 * kCellWidth, 0, kFrameWidth, kFrameHeight);
    };
    checkScene("blend_factor_pairs", [](const GlTable& gl) {
        gl.ClearColor(0, 0, 0, 1);
        gl.Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        pixelProjection(gl);
        gl.Color4f(0.2f, 0.5f, 0.8f, 1.0f);
        rect(gl, 0, 0, kFrameWidth, kFrameHeight);
        gl.Enable(GL_BLEND);
        gl.Color4f(0.9f, 0.6f, 0.3f, 0.4f);
        for (int row = 0; row < 9; ++row)
            for (int col = 0; col < 11; ++col) {
                gl.BlendFunc(kBlendSources[row], kBlendDestinations[col]);
                float x = (float)(col * kCellWidth), y = (float)(row * kCellHeight);
                rect(gl, x + 2, y + 2, x + kCellWidth - 2, y + kCellHeight - 2);
            }
    }, &check);
}

// Alpha test: eight bands, one for each function from GL_NEVER to GL_ALWAYS, each a quad whose
// alpha runs from 0 at the left to 1 at the right, tested against 0.5. The board compares
// 8-bit alpha against the truncated reference 127; the edge of a band falls where the
// interpolated alpha crosses it, which both renderers place within the excluded edge pixels.
TEST(StateImages, AlphaTestWithEveryFunction)
{
    checkScene("alpha_test_functions", [](const GlTable& gl) {
        gl.ClearColor(0.1f, 0.1f, 0.1f, 1);
        gl.Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        pixelProjection(gl);
        gl.Enable(GL_ALPHA_TEST);
        for (int i = 0; i < 8; ++i) {
            gl.AlphaFunc(GL_NEVER + i, 0.5f);
            float y0 = (float)(i * 20 + 2), y1 = (float)(i * 20 + 18);
            gl.Begin(GL_TRIANGLES);
            gl.Color4f(1, 1, 0, 0), gl.Vertex2f(0, y0);
            gl.Color4f(0, 1, 1, 1), gl.Vertex2f(kFrameWidth, y0);
            gl.Color4f(0, 1, 1, 1), gl.Vertex2f(kFrameWidth, y1);
            gl.Color4f(1, 1, 0, 0), gl.Vertex2f(0, y0);
            gl.Color4f(0, 1, 1, 1), gl.Vertex2f(kFrameWidth, y1);
            gl.Color4f(1, 1, 0, 0), gl.Vertex2f(0, y1);
            gl.End();
        }
    }, &kFlatCheck);
}

// Two triangles that pierce each other, in perspective, with the depth test on the board's
// w-buffer. Left half: GL_LESS over a depth cleared to 1. Right half: a scissored clear of
// the depth to 0 and GL_GREATER, which keeps the farther surface. The intersection line is
// an edge of the picture and so not compared; away from it the nearer (or farther) surface
// must win everywhere. Tolerance: the colours are graded, and the board iterates them
// linearly in screen space where Mesa corrects for perspective; over these shallow
// triangles that adds a few steps, so 16 a channel, and 0.5% of the pixels beyond.
TEST(StateImages, DepthTestOnTheWBufferWithIntersectingTriangles)
{
    const MesaCheck check{{16, 0.005}, 40, nullptr};
    checkScene("depth_intersecting", [](const GlTable& gl) {
        gl.ClearColor(0, 0, 0, 1);
        gl.Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        gl.Enable(GL_DEPTH_TEST);
        for (int half = 0; half < 2; ++half) {
            int x = half * kFrameWidth / 2;
            if (half == 1) {
                gl.Scissor(x, 0, kFrameWidth / 2, kFrameHeight);
                gl.Enable(GL_SCISSOR_TEST);
                gl.ClearDepth(0.0);
                gl.Clear(GL_DEPTH_BUFFER_BIT);
                gl.Disable(GL_SCISSOR_TEST);
            }
            beginScene(gl, x, 0, kFrameWidth / 2, kFrameHeight, false);
            gl.DepthFunc(half == 0 ? GL_LESS : GL_GREATER);
            gl.Begin(GL_TRIANGLES);
            gl.Color3f(1, 0.2f, 0.2f), gl.Vertex3f(-1.2f, -1.2f, -1.5f);
            gl.Color3f(1, 0.6f, 0.2f), gl.Vertex3f(1.2f, -0.9f, 1.5f);
            gl.Color3f(1, 0.2f, 0.6f), gl.Vertex3f(0.0f, 1.4f, 0.0f);
            gl.Color3f(0.2f, 0.3f, 1), gl.Vertex3f(-1.2f, -0.9f, 1.5f);
            gl.Color3f(0.2f, 0.8f, 1), gl.Vertex3f(1.2f, -1.2f, -1.5f);
            gl.Color3f(0.2f, 1, 0.4f), gl.Vertex3f(0.2f, 1.3f, 0.2f);
            gl.End();
        }
    }, &check);
}

// Fog in its three modes over a floor that recedes from 1 to 40 units: bands GL_LINEAR
// (start 2, end 30), GL_EXP (density 0.12) and GL_EXP2 (density 0.08), grey fog over a
// white floor. The board fogs by its 64-entry table indexed by w and interpolated between
// entries, Mesa from the exact eye distance. Measured, the table's steps add nothing visible
// beyond the RGB565 dither: 12 a channel as for flat colours, with 1% of the pixels allowed
// beyond it for the table's coarser steps far away.
TEST(StateImages, FogInItsThreeModesOverARecedingPlane)
{
    MesaCheck check{{12, 0.01}, 40, nullptr};
    checkScene("fog_three_modes", [](const GlTable& gl) {
        gl.ClearColor(0.0f, 0.0f, 0.25f, 1);
        gl.Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        float fogColour[4] = {0.6f, 0.6f, 0.65f, 1};
        gl.Fogfv(GL_FOG_COLOR, fogColour);
        gl.Enable(GL_FOG);
        const int band = kFrameWidth / 3;
        for (int mode = 0; mode < 3; ++mode) {
            gl.Viewport(mode * band, 0, band, kFrameHeight);
            gl.MatrixMode(GL_PROJECTION);
            gl.LoadIdentity();
            perspective(gl, 50.0, (double)band / kFrameHeight, 1.0, 60.0);
            gl.MatrixMode(GL_MODELVIEW);
            gl.LoadIdentity();
            if (mode == 0) {
                gl.Fogi(GL_FOG_MODE, GL_LINEAR);
                gl.Fogf(GL_FOG_START, 2.0f);
                gl.Fogf(GL_FOG_END, 30.0f);
            } else {
                gl.Fogi(GL_FOG_MODE, mode == 1 ? GL_EXP : GL_EXP2);
                gl.Fogf(GL_FOG_DENSITY, mode == 1 ? 0.12f : 0.08f);
            }
            gl.Begin(GL_TRIANGLES);
            gl.Color3f(1, 1, 1);
            gl.Vertex3f(-3, -1, -1), gl.Vertex3f(3, -1, -1), gl.Vertex3f(3, -1, -40);
            gl.Vertex3f(-3, -1, -1), gl.Vertex3f(3, -1, -40), gl.Vertex3f(-3, -1, -40);
            gl.End();
        }
    }, &check);
}

// Scissored clears: red everywhere, then a green box and a blue box that overlaps it and
// runs past the frame's top, each cleared with its own scissor box.
TEST(StateImages, ScissoredClears)
{
    checkScene("scissored_clears", [](const GlTable& gl) {
        gl.ClearColor(0.8f, 0.1f, 0.1f, 1);
        gl.Clear(GL_COLOR_BUFFER_BIT);
        gl.Enable(GL_SCISSOR_TEST);
        gl.Scissor(20, 30, 70, 50);
        gl.ClearColor(0.1f, 0.8f, 0.1f, 1);
        gl.Clear(GL_COLOR_BUFFER_BIT);
        gl.Scissor(60, 60, 60, 200);
        gl.ClearColor(0.1f, 0.1f, 0.8f, 1);
        gl.Clear(GL_COLOR_BUFFER_BIT);
        gl.Disable(GL_SCISSOR_TEST);
    }, &kFlatCheck);
}

// glClear of the colour alone and of the depth alone. A near quad fills the frame; clearing
// the colour alone leaves its depth, so a farther yellow quad over the left half is hidden;
// clearing the depth alone keeps the colours, so a far green quad over the lower half shows.
TEST(StateImages, ClearOfColourAloneAndDepthAlone)
{
    checkScene("clear_colour_then_depth", [](const GlTable& gl) {
        gl.ClearColor(0.2f, 0.2f, 0.2f, 1);
        gl.Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        beginScene(gl, 0, 0, kFrameWidth, kFrameHeight, false);
        gl.Enable(GL_DEPTH_TEST);
        gl.Color3f(1, 0, 0);
        gl.Begin(GL_TRIANGLES);
        gl.Vertex3f(-3, -3, 1), gl.Vertex3f(3, -3, 1), gl.Vertex3f(3, 3, 1);
        gl.Vertex3f(-3, -3, 1), gl.Vertex3f(3, 3, 1), gl.Vertex3f(-3, 3, 1);
        gl.End();
        gl.ClearColor(0.1f, 0.1f, 0.5f, 1);
        gl.Clear(GL_COLOR_BUFFER_BIT);
        gl.Color3f(1, 1, 0);
        gl.Begin(GL_TRIANGLES);
        gl.Vertex3f(-3, -3, -1), gl.Vertex3f(0, -3, -1), gl.Vertex3f(0, 3, -1);
        gl.Vertex3f(-3, -3, -1), gl.Vertex3f(0, 3, -1), gl.Vertex3f(-3, 3, -1);
        gl.End();
        gl.Clear(GL_DEPTH_BUFFER_BIT);
        gl.Color3f(0, 1, 0);
        gl.Begin(GL_TRIANGLES);
        gl.Vertex3f(-3, -3, -2), gl.Vertex3f(3, -3, -2), gl.Vertex3f(3, 0, -2);
        gl.Vertex3f(-3, -3, -2), gl.Vertex3f(3, 0, -2), gl.Vertex3f(-3, 0, -2);
        gl.End();
    }, &kFlatCheck);
}

// A decal on a receding floor, in the same plane. Left half: without polygon offset the
// decal fights the floor (the pattern is the board's own and is held against the golden
// file only). Right half: glPolygonOffset(-1, -2) pulls the decal in front, and it shows
// whole, as in Mesa. The library ignores the factor and biases the w-buffer by
// units x 140; Mesa uses the factor on this slanted floor.
TEST(StateImages, PolygonOffsetRemovesZFightingOfADecal)
{
    MesaCheck check = kFlatCheck;
    check.exclude = [](PixelMask& mask) { dropRect(mask, 0, 0, kFrameWidth / 2, kFrameHeight); };
    checkScene("polygon_offset_decal", [](const GlTable& gl) {
        gl.ClearColor(0, 0, 0, 1);
        gl.Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        gl.Enable(GL_DEPTH_TEST);
        for (int half = 0; half < 2; ++half) {
            beginScene(gl, half * kFrameWidth / 2, 0, kFrameWidth / 2, kFrameHeight, false);
            gl.Rotatef(-60.0f, 1.0f, 0.0f, 0.0f);
            gl.Color3f(0.3f, 0.3f, 0.9f);
            gl.Begin(GL_TRIANGLES);
            gl.Vertex3f(-2, -2, 0), gl.Vertex3f(2, -2, 0), gl.Vertex3f(2, 2, 0);
            gl.Vertex3f(-2, -2, 0), gl.Vertex3f(2, 2, 0), gl.Vertex3f(-2, 2, 0);
            gl.End();
            if (half == 1) {
                gl.PolygonOffset(-1.0f, -2.0f);
                gl.Enable(GL_POLYGON_OFFSET_FILL);
            }
            gl.Color3f(1.0f, 0.8f, 0.1f);
            gl.Begin(GL_TRIANGLES);
            gl.Vertex3f(-0.9f, -1.3f, 0), gl.Vertex3f(0.7f, -1.1f, 0), gl.Vertex3f(0.2f, 1.5f, 0);
            gl.End();
            gl.Disable(GL_POLYGON_OFFSET_FILL);
        }
    }, &check);
}

} // namespace
