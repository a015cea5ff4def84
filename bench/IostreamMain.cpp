// The least that a C++ program with a stream costs: the yardstick for starting ours.
#include <iostream>

int main() {
    std::cout << "help\n";
    return std::cout.flush() ? 0 : 1;
}
