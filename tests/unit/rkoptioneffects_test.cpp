// rkoptioneffects_test.cpp - tests of rkoption: what the keys do.

#include "optionfixture.h"

namespace {

class RkOptionEffects : public OptionFixture {};

TEST_F(RkOptionEffects, ModesOfTheSession) {
    apply('B');
    EXPECT_TRUE(pSession->m_batch);
    apply('A', "T");
    apply('A', "M");
    EXPECT_EQ(pSession->m_askMode, 5);
    apply('L', "W");
    apply('L', "M");
    EXPECT_EQ(pSession->m_levelMode, 39);
    apply('L', "x");
    EXPECT_EQ(pSession->m_levelMode, 39);
}

TEST_F(RkOptionEffects, DataGoesIntoTheParameterInput) {
    apply('d', "x=1");
    apply('d', "x=2");
    rkString value;
    ASSERT_TRUE(g_istrm.m_data.get("x", value));
    EXPECT_STREQ(value.c_str(), "2");
}

TEST_F(RkOptionEffects, LastIniFileCounts) {
    apply('i', "a");
    EXPECT_EQ(pSession->m_iniName.c_str(), in("a.ini"));
    EXPECT_FALSE(pSession->m_iniWrite);
    apply('I', "b");
    EXPECT_EQ(pSession->m_iniName.c_str(), in("b.ini"));
    EXPECT_TRUE(pSession->m_iniWrite);
}

TEST_F(RkOptionEffects, OutputFilesAreOpenedAtOnce) {
    apply('o', "a");
    apply('r', "a");
    apply('q', "a");
    apply('u', "a");
    EXPECT_TRUE(exists("out/a.txt"));
    EXPECT_TRUE(exists("out/a.csv"));
    EXPECT_TRUE(exists("out/a_name.csv"));
    EXPECT_TRUE(exists("out/a_sum.csv"));
    EXPECT_EQ(rkSession::m_nameMode, 2);
    EXPECT_FALSE(pSession->m_unopenedFile);
}

TEST_F(RkOptionEffects, SmallKeysReplaceAndCapitalsAppend) {
    for (char const *name :
         {"out/w.txt", "out/a.txt", "out/w.csv", "out/a.csv", "out/w_sum.csv", "out/a_sum.csv"}) {
        write(name, "old\n");
    }
    apply('o', "w");
    apply('O', "a");
    apply('r', "w");
    apply('R', "a");
    apply('u', "w");
    apply('U', "a");
    EXPECT_EQ(read("out/w.txt"), "");
    EXPECT_EQ(read("out/w.csv"), "");
    EXPECT_EQ(read("out/w_sum.csv"), "");
    EXPECT_EQ(read("out/a.txt"), "old\n");
    EXPECT_EQ(read("out/a.csv"), "old\n");
    EXPECT_EQ(read("out/a_sum.csv"), "old\n");
}

TEST_F(RkOptionEffects, FileThatCannotBeOpenedIsRemembered) {
    for (char key : std::string("oOrRquU")) {
        pSession->m_unopenedFile = false;
        apply(key, "missing/dir/x");
        EXPECT_TRUE(pSession->m_unopenedFile) << key;
    }
}

TEST_F(RkOptionEffects, QPlusSetsBitOneAndOpensNoFile) {
    apply('q', "+");
    EXPECT_EQ(rkSession::m_nameMode, 1);
    EXPECT_TRUE(g_qstrm.empty());
    EXPECT_TRUE(std::filesystem::is_empty(path("out")));
}

TEST_F(RkOptionEffects, SignalFileIsOnlyNamed) {
    apply('g', "a");
    EXPECT_EQ(pSession->m_sglName.c_str(), out("a.end"));
    EXPECT_FALSE(exists("out/a.end"));
}

TEST_F(RkOptionEffects, DirectoriesAreNotSetByTheirApply) {
    apply('p', "elsewhere");
    apply('l', "elsewhere");
    apply('n', "elsewhere");
    EXPECT_EQ(rkSession::m_inDir.c_str(), in(""));
    EXPECT_EQ(rkSession::m_outDir.c_str(), out(""));
    EXPECT_STREQ(rkSession::m_defName.c_str(), "prog");
}

template <class Condition>
bool isLast(rkConditions &conditions, char const *pattern) {
    RunCondition *last = *--conditions.end();
    return dynamic_cast<Condition *>(last) && last->m_pattern == pattern;
}

TEST_F(RkOptionEffects, FunctionConditions) {
    rkConditions &conditions = *pSession->m_conditions;
    apply('f', "a");
    EXPECT_TRUE(isLast<RunCondition_f>(conditions, "a"));
    apply('f', "+b");
    EXPECT_TRUE(isLast<RunCondition_fAnd>(conditions, "b"));
    apply('f', "-c");
    EXPECT_TRUE(isLast<RunCondition_fNot>(conditions, "c"));
    apply('f', "=d");
    EXPECT_TRUE(isLast<RunCondition_fEqual>(conditions, "d"));
    EXPECT_EQ(conditions.size(), 4);
}

TEST_F(RkOptionEffects, TestConditions) {
    rkConditions &conditions = *pSession->m_conditions;
    apply('t', "a");
    EXPECT_TRUE(isLast<RunCondition_t>(conditions, "a"));
    apply('t', "+b");
    EXPECT_TRUE(isLast<RunCondition_tAnd>(conditions, "b"));
    apply('t', "-c");
    EXPECT_TRUE(isLast<RunCondition_tNot>(conditions, "c"));
    apply('t', "=d");
    EXPECT_TRUE(isLast<RunCondition_tEqual>(conditions, "d"));
    EXPECT_EQ(conditions.size(), 4);
}

TEST_F(RkOptionEffects, EmptyPatternAddsNoCondition) {
    for (char key : std::string("ft")) {
        for (char const *arg : {"", "+", "-", "="}) apply(key, arg);
    }
    EXPECT_TRUE(pSession->m_conditions->empty());
}

TEST_F(RkOptionEffects, SwitchesOfTheTests) {
    apply('P');
    apply('Q');
    apply('S');
    apply('C');
    apply('F', "keliA");
    EXPECT_TRUE(rkTest::m_pressing);
    EXPECT_TRUE(rkSession::m_nameExit);
    EXPECT_TRUE(g_tool.m_useData);
    EXPECT_TRUE(rkTest::m_cache);
    EXPECT_STREQ(rkTestList::m_startFunc.c_str(), "keliA");
}

TEST_F(RkOptionEffects, BadPriorityLeavesTheGoodOne) {
    apply('Y', "LOW");
    EXPECT_EQ(rkTool::m_priority, 3);
    apply('Y', "x");
    EXPECT_EQ(rkTool::m_priority, 3);
}

TEST_F(RkOptionEffects, LastHotKeyCounts) {
    apply('H', "ONLY");
    EXPECT_EQ(rkTest::m_hot, 2);
    apply('H');
    EXPECT_EQ(rkTest::m_hot, 1);
}

TEST_F(RkOptionEffects, ProcessorAndThreads) {
    apply('T', "AVX");
    EXPECT_EQ(s_cpuType, 70);
    apply('T', "nonsense");
    EXPECT_EQ(s_cpuType, -1);
    apply('N', "3");
    EXPECT_EQ(s_numThreads, 3);
}

TEST_F(RkOptionEffects, LastSortKeyCounts) {
    apply('s', "-");
    EXPECT_TRUE(pSession->m_noSort);
    apply('s');
    EXPECT_FALSE(pSession->m_noSort);
}

TEST_F(RkOptionEffects, EnumerationModes) {
    apply('e', "+");
    EXPECT_EQ(pSession->m_enumMode, 1);
    apply('e', "-");
    EXPECT_EQ(pSession->m_enumMode, -1);
    apply('e');
    EXPECT_EQ(pSession->m_enumMode, 0);
}

TEST_F(RkOptionEffects, HelpArguments) {
    apply('h');
    EXPECT_EQ(s_hintArg, 1);
    EXPECT_TRUE(s_hintHide);
    apply('h', "Lxyz");
    EXPECT_EQ(s_hintArg, 'L');
    apply('?');
    EXPECT_EQ(s_hintArg, 1);
    EXPECT_FALSE(s_hintHide);
    apply('?', "?");
    EXPECT_EQ(s_hintArg, '?');
    apply('v');
    EXPECT_TRUE(s_version);
}

TEST_F(RkOptionEffects, MemoryKeyHasFunctionsAndTextButNoRow) {
    EXPECT_EQ(pSession->getOption('m'), nullptr);
    rkOptionAction const &memory = rkFindOptionAction('m');
    EXPECT_EQ(memory.m_info("a").c_str(), "write memory info table to " + out("a_mem.csv"));
    memory.m_apply("a", pSession);
    EXPECT_TRUE(exists("out/a_mem.csv"));
    EXPECT_EQ(g_mstrm.size(), 1);
    EXPECT_STREQ(rkFindOptionText('m').m_help,
                 "-m[<file-name>]  = create *_mem.csv file and write memory info\n");
}

} // namespace
