// spy.cpp - the calls that spies have seen.

#include "spy.h"

#include "rkmemory.h"

std::vector<SeenCall> g_seen;

int roomAt(void const *p, int *block) {
    int size = 0, index = 0;
    for (void *b = rkMallocFirst(&size, nullptr); b; b = rkMallocNext(&size, nullptr), ++index) {
        auto begin = static_cast<char const *>(b);
        auto at = static_cast<char const *>(p);
        if (at < begin || at >= begin + size) continue;
        if (block) *block = index;
        return static_cast<int>(begin + size - at);
    }
    return 0;
}
