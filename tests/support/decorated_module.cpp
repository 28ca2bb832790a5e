// A test module whose only export carries a __stdcall decoration: "_grBufferClear@12". On
// Windows a .def file gives it that name; on Linux the build renames the placeholder below.
#if defined(_WIN32)
extern "C" int decorated_clear(int a, int b, int c) { return a + b + c + 1000; }
#else
extern "C" __attribute__((visibility("default"))) int _grBufferClear_12(int a, int b, int c) {
  return a + b + c + 1000;
}
#endif
