// KyGrowth.h: how cost grows with the size, the width and the depth of a tree.
#pragma once

// Measures every operation of this project's library on the racks S, M and L, on one item with 10 to 100,000 like sub-items
// of one parameter (WIDE) and on a chain of 10 to 4096 items (DEEP), fits time = a * n^b, and prints the figures and b.
void printGrowth(unsigned int repetitions);
