// reconstructcalls.h - what the suites of reconstruction pass to the library, for their tests.

#ifndef RAKOVA_TESTS_RECONSTRUCTCALLS_H
#define RAKOVA_TESTS_RECONSTRUCTCALLS_H

#include <set>

#include "kmvc.h"
#include "seenargs.h"
#include "spy.h"
#include "suitetest.h"

// What stood behind the pointers of each call of g_seen.
struct Behind {
    SeenArgument coeffs;       // where the pointer to the coefficients pointed
    std::vector<Kel32s> modes; // one for each block
    std::vector<Kel16s> tables;
};
inline std::vector<Behind> g_behind;

inline void noteCoeffs(Kel16s **pp) {
    g_behind.push_back({seen(*pp), {}, {}});
}
inline void noteModes(Kel32s const *modes, int count) {
    g_behind.back().modes.assign(modes, modes + count);
}
inline void noteTable(Kel16s const *table) {
    g_behind.back().tables.insert(g_behind.back().tables.end(), table, table + 16);
}

// A place in a tracked block.
struct Place {
    int block, offset;
    bool operator==(Place const &other) const { return block == other.block && offset == other.offset; }
};
inline void PrintTo(Place const &place, std::ostream *stream) {
    *stream << "byte " << place.offset << " of block " << place.block;
}

inline Place placeOf(SeenArgument const &seen) {
    const std::vector<suite::Block> blocks = suite::Sets::blocks();
    if (seen.block < 0 || seen.block >= static_cast<int>(blocks.size())) return {seen.block, 0};
    return {seen.block, blocks[static_cast<size_t>(seen.block)].size - seen.room};
}

inline std::vector<long long> valuesFrom(SeenCall const &call, size_t first) {
    std::vector<long long> values;
    for (size_t i = first; i < call.args.size(); ++i) values.push_back(call.args[i].value);
    return values;
}

class Reconstruct : public suite::SuiteTest {
protected:
    // One call on the set in hand.
    static SeenCall callOnce(suite::Sets &sets) {
        g_seen.clear();
        g_behind.clear();
        EXPECT_EQ(sets.call(), 0);
        EXPECT_EQ(g_seen.size(), 1u);
        return g_seen.back();
    }
    // The test's own statistic on the set in hand.
    static void statistic(rkTest *test, int calls) {
        g_seen.clear();
        g_behind.clear();
        long long clocks = 0;
        EXPECT_EQ(test->m_funcStat(&calls, &clocks), rkResSuccess);
    }
    suite::Outcome runWith(std::string const &function, std::string const &lines) {
        IniFile file("[" + function + "]\n" + lines + "\n");
        g_seen.clear();
        g_behind.clear();
        return run(function);
    }
};

inline bool has(std::string const &text, char const *word) {
    return text.find(word) != std::string::npos;
}

// All values of a call but those of its pointers, which stand in `pointers`.
inline void expectValues(SeenCall const &call, std::set<size_t> const &pointers,
                         std::vector<long long> expected) {
    std::vector<long long> values;
    for (size_t i = 0; i < call.args.size(); ++i) {
        if (pointers.count(i)) continue;
        EXPECT_EQ(call.args[i].data, nullptr) << i;
        values.push_back(call.args[i].value);
    }
    EXPECT_EQ(values, expected) << call.function;
}

#endif
