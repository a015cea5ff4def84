// What finding-test finds mutants in. Not part of any program.

namespace {

constexpr int kLimit = 3;
constexpr int kChunkSize = 64;

enum class Colour { Red = 1, Blue };

struct Sizes {
    static void reserve(int) {}
};

bool IsSmall(int value) {
    return value < kLimit && value != 0;
}

int Count(const char* text, bool isEager) {
    Sizes::reserve(20);
    int count = 0;
    for (const char* at = text; *at != '\0'; ++at) {
        if (*at == ' ') {
            continue;
        }
        switch (*at - 'a') {
            case 1:
                ++count;
                break;
            default:
                count += isEager ? 2 : kChunkSize;
                break;
        }
        if (*at == '.') {
            return count;
        }
    }
    static_assert(kLimit > 1);
    return count;
}

}  // namespace

int main(int argc, char**) {
    return Count(argc > 1 ? "" : "ab c.d", true) + (IsSmall(argc) ? 10 : 0);
}
