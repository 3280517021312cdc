// dvcodes.cpp - the variable-length codes of DV as texts.

#include "dvcodes.h"

#include "dvtables.h"

namespace dv {

Bits bitsOf(int value, int count) {
    Bits bits;
    for (int i = count - 1; i >= 0; --i) bits += value >> i & 1 ? '1' : '0';
    return bits;
}

static void addCodes(unsigned int const *table, Codes &codes) {
    for (; *table != 0; ++table) {
        const int marked = static_cast<int>(*table >> 16);
        int length = 0;
        while (marked >> (length + 1) != 0) ++length;
        codes[{*table >> 8 & 255, *table & 255}] = bitsOf(marked, length);
    }
}

Codes const &codes() {
    static const Codes all = [] {
        Codes codes;
        addCodes(dvTable1, codes);
        addCodes(dvTable2, codes);
        return codes;
    }();
    return all;
}

Bits const &endOfBlock() {
    return codes().at({127, 0});
}

Bits event(int run, int level) {
    const int amplitude = level < 0 ? -level : level;
    const auto found = codes().find({run, amplitude});
    if (found != codes().end()) return found->second + (level < 0 ? '1' : '0');
    return codes().at({run - 1, 0}) + event(0, level);
}

} // namespace dv
