// The GL types, enumerants and entry-point declarations, from the public header.
#pragma once

#include <zvgl/gl.h>
