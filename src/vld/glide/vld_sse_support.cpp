// Whether the SSE paths can run here: the processor must have SSE and the system must save
// the SSE registers across task switches.
#include "vld/api/vld_callees.h"

#if defined(__i386__) || defined(__x86_64__)
#include <cpuid.h>
#endif

// 1 when the processor reports SSE (CPUID leaf 1, EDX bit 25) and the system runs it, else 0.
// Every x86-64 processor has SSE and every x86-64 system keeps its registers. On 32-bit x86
// the CPUID bit decides: the systems this library runs on (NT-family Windows, Linux) switch
// on the SSE state whenever the processor has it. Other processors have no SSE paths.
int KSP_vld_sse_inq_support()
{
#if defined(__x86_64__)
    return 1;
#elif defined(__i386__)
    unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
    // __get_cpuid tests that CPUID exists and that leaf 1 is within range.
    if (!__get_cpuid(1, &eax, &ebx, &ecx, &edx))
        return 0;
    return (edx & bit_SSE) ? 1 : 0;
#else
    return 0;
#endif
}
