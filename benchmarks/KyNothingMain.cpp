// A program of the C++ library that does nothing: what starting one costs.
#include <iostream>

int main() { return std::cout.good() ? 0 : 1; }
