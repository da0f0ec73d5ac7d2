// KyBlockCount.h: how many blocks of the heap are in use.
#pragma once

// Counted in ky_bench_blocks alone, because counting takes time: null in ky_bench.
extern "C" __attribute__((weak)) long kyBlocksInUse();
