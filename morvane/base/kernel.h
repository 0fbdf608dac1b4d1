// The attribute of the inner loops.
//
// A kernel is the plainest loop over flat arrays, with no branch in it; the compiler makes vector code of it,
// once for each instruction set below, and the fitting one is picked when the program starts. All versions
// give the same bits.
#pragma once

// Where the whole program is compiled for the widest set already, one version is enough.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(__AVX512F__) &&              \
    !defined(MORVANE_PLAIN_KERNELS)
#define MORVANE_KERNEL __attribute__((target_clones("arch=x86-64-v4", "arch=x86-64-v3", "default")))
#else
#define MORVANE_KERNEL
#endif
