#include <corvel/corvel.h>

int main() {
    return 1;
}
