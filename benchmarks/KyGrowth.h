// KyGrowth.h: how cost grows with the width and the depth of a tree.
#pragma once

// Measures this project's library on one item with 10 to 100,000 like sub-items of one parameter (WIDE) and on a chain of
// 10 to 4096 items (DEEP), fits time = a * n^b to each operation, and prints the figures and b.
void printGrowth(unsigned int repetitions);
