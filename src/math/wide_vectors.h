#pragma once

#include <cstdlib>  // tells which C library this is

// Marks a function whose loops are compiled twice: for the vector registers that every processor has, and for
// twice as wide ones, which the start of the program chooses where the processor has them. No number depends
// on it: each lane does what a scalar would, and neither version fuses a product with a sum.
#if defined(__x86_64__) && defined(__GLIBC__)  // the choice at the start is a service of that C library
#define VARPRE_WIDE_VECTORS [[gnu::target_clones("avx2", "default")]]
#else
#define VARPRE_WIDE_VECTORS
#endif
