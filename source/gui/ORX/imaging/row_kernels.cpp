// row_kernels.cpp: choosing the inner loops for the processor the program runs on.
#include "gui/ORX/imaging/row_kernels.h"

const RowKernels& best_row_kernels() {
#ifdef ORX_VECTOR_CODE
    return __builtin_cpu_supports("avx2") ? avx2_row_kernels : sse2_row_kernels;
#else
    return portable_row_kernels;
#endif
}
