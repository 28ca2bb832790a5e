// A test module that exports plain, undecorated names.
#if defined(_WIN32)
#define EXPORT __declspec(dllexport)
#else
#define EXPORT __attribute__((visibility("default")))
#endif

extern "C" EXPORT int grGlideInit(void) { return 7; }
extern "C" EXPORT int plainTwice(int value) { return 2 * value; }
