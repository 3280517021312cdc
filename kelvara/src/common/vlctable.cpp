// vlctable.cpp - how the tables for decoding are built.

#include "vlctable.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace kelvara {

using Table = std::vector<Kel32s>;

static bool fits(const VlcCode &code) {
    return code.length >= 1 && code.length <= maxVlcLength && code.code >> code.length == 0;
}

// False if another code is there already: one of the two begins the other.
static bool fill(Table &table, size_t first, size_t count, Kel32s entry) {
    const auto begin = table.begin() + static_cast<std::ptrdiff_t>(first);
    const auto end = begin + static_cast<std::ptrdiff_t>(count);
    if (std::any_of(begin, end, [](Kel32s present) { return present != 0; })) return false;
    std::fill(begin, end, entry);
    return true;
}

static Kel32s entryOf(const VlcCode &code) {
    return code.value * 256 + code.length;
}

// Codes that are longer than the root get a table behind it for each of their beginnings, as wide as the
// longest one needs.
static bool link(Table &table, const std::vector<VlcCode> &codes, int root) {
    std::vector<int> more(size_t{1} << root);
    for (const VlcCode &code : codes) {
        if (code.length <= root) continue;
        int &bits = more[code.code >> (code.length - root)];
        bits = std::max(bits, code.length - root);
    }
    for (size_t i = 0; i < more.size(); ++i) {
        if (more[i] == 0) continue;
        const auto place = static_cast<Kel32s>(table.size());
        if (!fill(table, 1 + i, 1, place * 256 + vlcLink + more[i])) return false;
        table.resize(table.size() + (size_t{1} << more[i]));
    }
    return true;
}

static bool place(Table &table, const VlcCode &code, int root) {
    if (code.length <= root) {
        const int free = root - code.length;
        return fill(table, 1 + (size_t{code.code} << free), size_t{1} << free, entryOf(code));
    }
    const int rest = code.length - root;
    const Kel32s link = table[1 + (code.code >> rest)];
    const int free = (link & (vlcLink - 1)) - rest;
    const size_t within = size_t{code.code & ((1u << rest) - 1)} << free;
    return fill(table, static_cast<size_t>(link >> 8) + within, size_t{1} << free, entryOf(code));
}

static KelStatus build(const std::vector<VlcCode> &codes, Table &table) {
    if (codes.empty() || !std::all_of(codes.begin(), codes.end(), fits)) return kelStsRangeErr;
    int longest = 0;
    for (const VlcCode &code : codes) longest = std::max(longest, code.length);
    const int root = std::min(longest, vlcRootBits);
    table.assign(1 + (size_t{1} << root), 0);
    table[0] = root;
    if (!link(table, codes, root)) return kelStsBitStreamErr;
    for (const VlcCode &code : codes) {
        if (!place(table, code, root)) return kelStsBitStreamErr;
    }
    return kelStsNoErr;
}

static KelStatus handOut(const Table &table, Kel32s **ppTable) {
    const size_t bytes = table.size() * sizeof(Kel32s);
    auto copy = static_cast<Kel32s *>(std::malloc(bytes));
    if (!copy) return kelStsMemAllocErr;
    std::copy(table.begin(), table.end(), copy);
    *ppTable = copy;
    return kelStsNoErr;
}

KelStatus buildVlcTable(const std::vector<VlcCode> &codes, Kel32s **ppTable) {
    try {
        Table table;
        const KelStatus status = build(codes, table);
        return status == kelStsNoErr ? handOut(table, ppTable) : status;
    } catch (const std::bad_alloc &) {
        return kelStsMemAllocErr;
    }
}

} // namespace kelvara
