// seenargs.h - the arguments of a call compared with a list, and the data of a set with the fills behind
// them.

#ifndef RAKOVA_TESTS_SEENARGS_H
#define RAKOVA_TESTS_SEENARGS_H

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "inifile.h"
#include "km.h"
#include "spy.h"
#include "suitetest.h"

// ---- arguments ----------------------------------------------------------------------

struct Arg {
    enum Kind { Value, Block, Own } kind;
    int n;
};

inline Arg value(int n) {
    return {Arg::Value, n};
}
// The first byte of the tracked block.
inline Arg block(int i) {
    return {Arg::Block, i};
}
// The address of a static of the suite's file.
inline Arg own() {
    return {Arg::Own, 0};
}

inline void expectArg(SeenArgument const &seen, Arg const &expected, std::vector<int> const &sizes) {
    switch (expected.kind) {
        case Arg::Value:
            EXPECT_EQ(seen.data, nullptr);
            EXPECT_EQ(seen.value, expected.n);
            break;
        case Arg::Block:
            EXPECT_EQ(seen.block, expected.n);
            EXPECT_EQ(seen.room, sizes[expected.n]);
            break;
        case Arg::Own:
            EXPECT_NE(seen.data, nullptr);
            EXPECT_EQ(seen.block, -1);
            break;
    }
}

inline void expectArgs(SeenCall const &call, std::vector<Arg> const &expected,
                       std::vector<int> const &sizes) {
    ASSERT_EQ(call.args.size(), expected.size()) << call.function;
    for (size_t i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE(call.function + ", argument " + std::to_string(i));
        expectArg(call.args[i], expected[i], sizes);
    }
}

// The calls of a run that count: each set has a warm-up, which is alike.
inline std::vector<SeenCall> callsOf(suite::Outcome &run, std::string const &function) {
    g_seen.clear();
    run = suite::runTest(suite::findTest(function));
    std::vector<SeenCall> calls;
    for (size_t i = 1; i < g_seen.size(); i += 2) {
        EXPECT_EQ(g_seen[i].function, function);
        calls.push_back(g_seen[i]);
    }
    return calls;
}

// ---- data -----------------------------------------------------------------------------

struct Fill {
    kmType type;
    int length;
    double low, high;
};

// The blocks of the set in hand are random data, drawn one behind the other from the seed of a run on.
inline void expectRandom(std::vector<suite::Block> const &blocks, std::vector<Fill> const &fills) {
    ASSERT_EQ(blocks.size(), fills.size());
    const unsigned int seed = kmVector::m_seed;
    kmVector::m_seed = 7;
    for (size_t i = 0; i < fills.size(); ++i) {
        kmVector model(fills[i].type);
        ASSERT_TRUE(model.createVectorExt(fills[i].length, 0, SetRandom, fills[i].low, fills[i].high));
        ASSERT_EQ(blocks[i].size, model.size());
        EXPECT_EQ(memcmp(blocks[i].data, model.m_data, model.size()), 0) << "block " << i;
        const std::set<unsigned char> bytes(blocks[i].data, blocks[i].data + blocks[i].size);
        EXPECT_GT(bytes.size(), 3u) << "block " << i;
    }
    kmVector::m_seed = seed;
}

// As long as it lives the first block of a set finds a place and the second does not.
class NoSecondBlock {
public:
    NoSecondBlock() : m_shift(rkGetVectorShift()) { rkSetVectorShift(-1000000); }
    ~NoSecondBlock() { rkSetVectorShift(m_shift); }

private:
    int m_shift;
};

// ---- rows ----------------------------------------------------------------------------

// The first parameter cell of each row.
inline suite::Cells firstCells(suite::Rows const &rows) {
    suite::Cells cells;
    for (suite::Cells const &row : rows)
        cells.push_back(row.size() > suite::firstParm ? row[suite::firstParm] : "(none)");
    return cells;
}

#endif
