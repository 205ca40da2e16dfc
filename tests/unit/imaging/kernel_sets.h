// Every set of inner loops that this build has and this processor runs, the plain one first.
#pragma once

#include "gui/ORX/imaging/row_kernels.h"

#include <vector>

inline std::vector<const RowKernels*> kernel_sets() {
    std::vector<const RowKernels*> sets = {&portable_row_kernels};
#ifdef ORX_VECTOR_CODE
    sets.push_back(&sse2_row_kernels);
    if (__builtin_cpu_supports("avx2")) {
        sets.push_back(&avx2_row_kernels);
    }
#endif
    return sets;
}
