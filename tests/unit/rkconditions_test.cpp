// rkconditions_test.cpp - which tests the keys -f and -t select.

#include <gtest/gtest.h>

#include "rkconditions.h"
#include "rktest.h"

namespace {

class Named : public rkTest {
public:
    Named(char const *function, char const *testClass)
        : rkTest(rkFuncLoop(nullptr), rkFuncStat(nullptr), function, "some.cpp", testClass) {}
};

Named sad16("keliSAD16x16_8u32s", "CSAD//KM_REG");
Named sad8("keliSAD8x8_8u32s_C1R", "Timvcmp4_SAD//KM_REG");
Named ssd8("keliSSD8x8_8u32s_C1R", "CME//KM_REG");
Named copy16("keliCopy16x16_8u_C1R", "Timvc_AddBlk//KM_REG");

// One digit for each of the four, 1 for a selected one.
std::string selected(std::initializer_list<RunCondition *> conditions) {
    rkConditions list;
    for (RunCondition *c : conditions) list.push_back(c);
    std::string digits;
    for (rkTest *test : {&sad16, &sad8, &ssd8, &copy16}) digits += list.tobeRun(test) ? '1' : '0';
    for (RunCondition *c : conditions) delete c;
    return digits;
}

} // namespace

TEST(RkConditions, WithoutConditionsAllTestsRun) {
    EXPECT_EQ(selected({}), "1111");
}

TEST(RkConditions, TwoPatternsSelectTestsWithEitherWord) {
    EXPECT_EQ(selected({new RunCondition_f("SAD"), new RunCondition_f("SSD")}), "1110");
}

TEST(RkConditions, AndPatternKeepsNamesThatContainBoth) {
    EXPECT_EQ(selected({new RunCondition_f("SAD"), new RunCondition_fAnd("16x16")}), "1000");
}

TEST(RkConditions, NotPatternTakesNamesAway) {
    EXPECT_EQ(selected({new RunCondition_f("SAD"), new RunCondition_fNot("16x16")}), "0100");
}

TEST(RkConditions, NotPatternAloneLeavesAllOthers) {
    EXPECT_EQ(selected({new RunCondition_fNot("SAD")}), "0011");
}

TEST(RkConditions, OrderOfConditionsDoesNotMatter) {
    EXPECT_EQ(selected({new RunCondition_fNot("16x16"), new RunCondition_f("SAD")}), "0100");
}

TEST(RkConditions, EqualMatchIsSubjectToTheTakingConditionsToo) {
    EXPECT_EQ(selected({new RunCondition_fEqual("keliSAD16x16_8u32s")}), "1000");
    EXPECT_EQ(selected({new RunCondition_fEqual("keliSAD16x16_8u32s"), new RunCondition_fAnd("8x8")}),
              "0000");
    EXPECT_EQ(selected({new RunCondition_fEqual("keliSAD16x16_8u32s"), new RunCondition_fNot("SAD")}),
              "0000");
}

TEST(RkConditions, EqualMatchTakesNoPartOfAName) {
    EXPECT_EQ(selected({new RunCondition_fEqual("keliSAD")}), "0000");
}

TEST(RkConditions, FunctionAndClassPatternsShareTheSelection) {
    EXPECT_EQ(selected({new RunCondition_f("Copy"), new RunCondition_t("SAD")}), "1101");
}

TEST(RkConditions, ClassConditionsLookAtTheClassOfTheTest) {
    EXPECT_EQ(selected({new RunCondition_tEqual("CME")}), "0010");
    EXPECT_EQ(selected({new RunCondition_tAnd("Timvc")}), "0101");
    EXPECT_EQ(selected({new RunCondition_tNot("Timvc")}), "1010");
    EXPECT_EQ(selected({new RunCondition_t("KM_REG")}), "0000") << "the marks are no part of the class";
}

TEST(RkConditions, PatternsMatchCase) {
    EXPECT_EQ(selected({new RunCondition_f("sad")}), "0000");
}
