// Device contexts where handles are opaque: any distinct non-null values do.
#include "wsys_test.h"

HDC wsys_test_dc(int i)
{
    return reinterpret_cast<HDC>((uintptr_t)(0x1000 + 0x10 * i));
}

HWND wsys_test_window(int i)
{
    return reinterpret_cast<HWND>(wsys_test_dc(i));
}
