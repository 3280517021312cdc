// wholelist_test.cpp - the list of all tests: how many there are, of which functions, and in which order.

#include <set>

#include "../cli/program.h"
#include "kmvc.h"

namespace {

using Names = std::set<std::string>;

// Functions that tests call before and after a measurement; none of them has a test of its own.
const Names preparing = {
    "keliFilterDenoiseAdaptiveFree_8u_C1",
    "keliFilterDenoiseAdaptiveInitAlloc_8u_C1",
    "keliFilterDenoiseMosquitoFree_8u_C1",
    "keliFilterDenoiseMosquitoInitAlloc_8u_C1",
    "keliFreeHuffmanTable_DV_32u",
    "keliHuffmanRunLevelTableInitAlloc_32s",
    "keliHuffmanTableFree_32s",
    "keliHuffmanTableInitAlloc_32s",
    "keliInitAllocHuffmanTable_DV_32u",
    "keliQuantInterGetSize_MPEG4",
    "keliQuantInterInit_MPEG4",
    "keliQuantIntraGetSize_MPEG4",
    "keliQuantIntraInit_MPEG4",
    "keliQuantInvInterGetSize_MPEG4",
    "keliQuantInvInterInit_MPEG4",
    "keliQuantInvIntraGetSize_MPEG4",
    "keliQuantInvIntraInit_MPEG4",
    "keliWarpGetSize_MPEG4",
    "keliWarpInit_MPEG4",
    "kelvcGetLibVersion",
};

Names testedFunctions() {
    Names names;
    for (rkTest *test : *pTestList) names.insert(test->m_name.c_str());
    return names;
}

} // namespace

class WholeList : public Program {
protected:
    // Number, function, test and source of each line that -e types.
    std::vector<Lines> enumerated() const {
        std::vector<Lines> rows;
        for (std::string const &line : run("-e").lines) {
            std::istringstream fields(line);
            Lines row{std::istream_iterator<std::string>(fields), {}};
            bool isRow = row.size() == 4 && row[0].find_first_not_of("0123456789") == std::string::npos;
            if (isRow) rows.push_back(row);
        }
        return rows;
    }
};

TEST_F(WholeList, Has387TestsOf367FunctionsIn104Classes) {
    Names classes;
    for (rkTest *test : *pTestList) classes.insert(test->m_info.m_name.c_str());
    EXPECT_EQ(pTestList->size(), 387);
    EXPECT_EQ(testedFunctions().size(), 367u);
    EXPECT_EQ(classes.size(), 104u);
}

TEST_F(WholeList, TestsEveryFunctionThatTheLibraryExportsButThosePreparing) {
    Names exported, expected = testedFunctions();
    for (std::string const &line : shell("nm -D --defined-only '" KELVARA_LIB_KELVC "'").lines) {
        std::istringstream fields(line);
        std::string address, type, name;
        fields >> address >> type >> name;
        if (name.compare(0, 3, "kel") == 0) exported.insert(name);
    }
    for (std::string const &name : preparing) EXPECT_TRUE(expected.insert(name).second) << name;
    EXPECT_EQ(exported, expected);
}

TEST_F(WholeList, IsEnumeratedInTheOrderOfTheNameGrammar) {
    std::vector<Lines> rows = enumerated();
    ASSERT_EQ(rows.size(), 388u); // with the test of the processor
    EXPECT_EQ(rows[0][1], "__rkTarvoCpu");
    for (size_t i = 1; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i][0], std::to_string(i + 1));
        kmFunc before(rows[i - 1][1].c_str()), name(rows[i][1].c_str());
        EXPECT_LE(before.compare(name), 0) << before.c_str() << " in front of " << name.c_str();
    }
}

TEST_F(WholeList, IsEnumeratedWithTheClassAndTheFileOfEachTest) {
    std::multiset<Lines> registered, listed;
    for (rkTest *test : *pTestList)
        registered.insert({test->m_name.c_str(), test->m_info.m_name.c_str(), test->m_file.c_str()});
    std::vector<Lines> rows = enumerated();
    ASSERT_FALSE(rows.empty());
    for (size_t i = 1; i < rows.size(); ++i) listed.insert({rows[i][1], rows[i][2], rows[i][3]});
    EXPECT_EQ(listed, registered);
}
