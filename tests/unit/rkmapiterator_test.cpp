// rkmapiterator_test.cpp - tests of rkmapiterator and rkmapdefault.

#include <gtest/gtest.h>

#include "consolescript.h"
#include "freshstart.h"
#include "rkmapdefault.h"
#include "rkmapiterator.h"
#include "text.h"

namespace {

template <class Parm>
std::string walk(Parm &parm) {
    std::string values;
    for (bool ok = parm.firstValue(); ok; ok = parm.nextValue()) values += std::to_string(parm.value()) + " ";
    return values;
}

// What a text is read as, or how it is refused.
template <class Parm>
std::string readAs(Parm const &parm, char const *input) {
    rkString text(input);
    text.m_failed = true; // an earlier failure must not count
    auto value = parm.stringToValue(text);
    return (text.failed() ? "failed " : "") + std::to_string(value);
}

void nameModes(rkMapIterator<int> &map) {
    map.init("mode", "Mode of search");
    map[3] = "fast";
    map[5] = "full";
}

} // namespace

// ---- a valid set --------------------------------------------------------------

TEST(RkEnumIterator, HasNoValidSetAtFirst) {
    rkEnumIterator_NCS<int> parm("mode", "");
    parm.add(3);
    EXPECT_FALSE(parm.m_validation);
    EXPECT_TRUE(parm.m_validValues.empty());
    EXPECT_EQ("", str(parm.validString()));
}

TEST(RkEnumIterator, WhatItHoldsBecomesValid) {
    rkEnumIterator_NCS<int> parm("mode", "");
    parm.add(3);
    parm.add(5);
    parm.add(3);
    parm.initValidation();
    EXPECT_TRUE(parm.m_validation);
    EXPECT_EQ(2, parm.m_validValues.size());
    EXPECT_EQ("|", str(parm.validString())) << "the values have no texts";
}

TEST(RkEnumIterator, AddedValuesJoinASetInForce) {
    rkEnumIterator_NCS<int> parm("mode", "");
    parm.initValidation();
    parm.add(3);
    parm.add(3);
    EXPECT_EQ(1, parm.m_validValues.size());
    EXPECT_EQ("3 3 ", walk(parm));
}

TEST(RkEnumIterator, FirstAddedValidationTakesTheListIn) {
    rkEnumIterator_NCS<int> parm("mode", "");
    parm.add(3);
    EXPECT_FALSE(parm.addValidation(3)) << "the list's own value is valid by then";
    EXPECT_TRUE(parm.addValidation(5));
    EXPECT_FALSE(parm.addValidation(5));
    EXPECT_EQ(2, parm.m_validValues.size());
    EXPECT_EQ("3 ", walk(parm));
}

TEST(RkEnumIterator, ListOfValidValues) {
    rkEnumIterator_NCS<int> parm("mode", "");
    rkList<int> more;
    for (int value : {7, 8, 7}) more.push_back(value);
    parm.addValidation(&more);
    EXPECT_EQ(2, parm.m_validValues.size());
    EXPECT_EQ(7, *parm.m_validValues.begin());
}

TEST(RkEnumIterator, ResetValidationForgetsTheSet) {
    rkEnumIterator_NCS<int> parm("mode", "");
    parm.addValidation(5);
    parm.resetValidation();
    EXPECT_FALSE(parm.m_validation);
    EXPECT_TRUE(parm.m_validValues.empty());
}

TEST(RkEnumIterator, AloneReadsEveryItemAsZero) {
    rkEnumIterator_NCS<int> parm("mode", "");
    parm.add(3);
    parm.translate("1;abc");
    EXPECT_EQ("0 0 ", walk(parm));
    EXPECT_EQ("", str(parm.valueToString(3)));
}

// ---- names --------------------------------------------------------------------

TEST(RkMapIterator, AnyLeadingPartOfANameInAnyCase) {
    rkMapIterator<int> map;
    nameModes(map);
    EXPECT_EQ("3", readAs(map, "f"));
    EXPECT_EQ("5", readAs(map, "FU"));
    EXPECT_EQ("5", readAs(map, "full"));
    EXPECT_EQ("failed 0", readAs(map, "x"));
    EXPECT_EQ("failed 0", readAs(map, "fuller"));
    EXPECT_EQ("failed 0", readAs(map, "3"));
}

TEST(RkMapIterator, EmptyTextFitsTheFirstEntry) {
    rkMapIterator<int> map;
    nameModes(map);
    EXPECT_EQ("3", readAs(map, ""));
}

TEST(RkMapIterator, WithoutEntriesNothingFits) {
    rkMapIterator<int> map;
    EXPECT_EQ("failed 0", readAs(map, ""));
}

TEST(RkMapIterator, UpperCaseNamesFitLowerCaseTexts) {
    rkMapIterator<int> map;
    map.init("code");
    map[1] = "LT";
    EXPECT_EQ("1", readAs(map, "lt"));
}

TEST(RkMapIterator, ShowsNamesForValues) {
    rkMapIterator<int> map;
    nameModes(map);
    EXPECT_EQ("fast", str(map.valueToString(3)));
    EXPECT_EQ("full", str(map.valueToString(5)));
    EXPECT_EQ("", str(map.valueToString(4)));
    EXPECT_EQ("fast|full", str(map.validString()));
    EXPECT_EQ("Mode of search {fast|full}", str(map.prompt()));
}

TEST(RkMapIterator, NamesAloneAreNoFamily) {
    rkMapIterator<int> map;
    nameModes(map);
    EXPECT_EQ("", walk(map));
    map.add(5);
    map.add(3);
    EXPECT_EQ("5 3 ", walk(map));
    EXPECT_EQ("full; fast", str(map.defaultString()));
    EXPECT_EQ("mode = full; fast", str(map.description()));
}

TEST(RkMapIterator, ReadsItsDefaultTextBack) {
    rkMapIterator<int> map;
    nameModes(map);
    map.add(5);
    map.add(3);
    map.translate(map.defaultString());
    EXPECT_EQ("5 3 ", walk(map));
}

TEST(RkMapIterator, SecondNameOfAValueIsThrownAway) {
    rkMapIterator<int> map;
    nameModes(map);
    map[3] = "slow";
    EXPECT_EQ("fast", str(map.valueToString(3)));
    EXPECT_EQ("slow", str(map.m_extraName));
    EXPECT_EQ(2, map.m_names.size());
}

TEST(RkMapIterator, ValuesAddedBeforeTheNamesAreNotValidByThat) {
    rkMapIterator<int> map;
    map.init("mode");
    map.add(9);
    map[3] = "fast";
    EXPECT_EQ(1, map.m_validValues.size());
    EXPECT_EQ("9 ", walk(map));
    EXPECT_EQ("fast", str(map.valueToString(3)));
}

TEST(RkMapIterator, UnnamedValueShowsAsNothing) {
    rkMapIterator<int> map;
    nameModes(map);
    map.add(9);
    EXPECT_EQ("", str(map.valueToString(9)));
    EXPECT_EQ("fast|full|", str(map.validString()));
    EXPECT_EQ("failed 0", readAs(map, "zzz"));
}

TEST(RkMapIterator, InitValidationCopiesNothing) {
    rkMapIterator<int> map;
    nameModes(map);
    map.add(3);
    map.initValidation();
    EXPECT_TRUE(map.m_validation);
    EXPECT_TRUE(map.m_validValues.empty());
    EXPECT_TRUE(map.m_names.empty());
    EXPECT_EQ(1, map.size());
}

TEST(RkMapIterator, ResetValidationForgetsTheNames) {
    rkMapIterator<int> map;
    nameModes(map);
    map.add(3);
    map.resetValidation();
    EXPECT_FALSE(map.m_validation);
    EXPECT_TRUE(map.m_names.empty());
    EXPECT_EQ(1, map.size());
}

TEST(RkMapIterator, ResetMapForgetsAll) {
    rkMapIterator<int> map;
    nameModes(map);
    map.add(3);
    map.resetMap();
    EXPECT_TRUE(map.empty());
    EXPECT_TRUE(map.m_validValues.empty());
    EXPECT_TRUE(map.m_names.empty());
    EXPECT_FALSE(map.m_validation);
}

TEST(RkMapIterator, StartsOverWithEveryInit) {
    rkMapIterator<int> map;
    nameModes(map);
    map.add(3);
    nameModes(map);
    map[7] = "other";
    EXPECT_TRUE(map.empty());
    EXPECT_EQ("fast|full|other", str(map.validString()));
}

TEST(RkMapIterator, InitForgetsTheNamesOfAnotherTest) {
    rkMapIterator<int> map;
    nameModes(map);
    map.init("code");
    map[3] = "LT";
    EXPECT_EQ("LT", str(map.validString()));
}

TEST(RkMapIterator, BadNameKeepsTheFamily) {
    CaptureLog log;
    g_istrm.m_data.set("mode", "fast;quick");
    rkMapIterator<int> map;
    nameModes(map);
    map.add(5);
    map.fromIStream(g_istrm);
    EXPECT_EQ("-Invalid value of mode = quick\n mode = full\n", log.text());
    EXPECT_EQ("5 ", walk(map));
}

TEST(RkMapIterator, AsksForNames) {
    CaptureLog log;
    ConsoleScript console("fu; fa\n");
    g_istrm.setIStream(&c_in);
    rkMapIterator<int> map;
    nameModes(map);
    map.add(3);
    map.fromIStream(g_istrm);
    EXPECT_EQ("\n Mode of search {fast|full} [fast] = ", console.questions());
    EXPECT_EQ(" mode = full; fast\n", log.text());
}

TEST(RkMapIterator, SmallTypesToo) {
    rkMapIterator<unsigned char> map;
    map.init("flag");
    map[200] = "high";
    map.translate("high");
    EXPECT_EQ("200 ", walk(map));
}

// ---- one named value ----------------------------------------------------------

TEST(RkMapDefault, ShowsAndReadsNames) {
    rkMapDefault<int> map(2, "Method");
    map[1] = "Auto";
    map[2] = "Manual";
    EXPECT_EQ("Auto|Manual", str(map.validString()));
    EXPECT_EQ("Method {Auto|Manual}", str(map.prompt()));
    EXPECT_EQ("Method = Manual", str(map.description()));
    EXPECT_EQ("", str(map.valueToString(3)));
    EXPECT_EQ("1", readAs(map, "aU"));
    EXPECT_EQ("2", readAs(map, "m"));
    EXPECT_EQ("1", readAs(map, ""));
    EXPECT_EQ("failed 0", readAs(map, "manually"));
}

TEST(RkMapDefault, EarlierNameWins) {
    rkMapDefault<int> map(0, "Method");
    map[7] = "manual";
    map[6] = "many";
    EXPECT_EQ("7", readAs(map, "man"));
    EXPECT_EQ("6", readAs(map, "many"));
}

TEST(RkMapDefault, NewValueGetsAnEmptyName) {
    rkMapDefault<int> map(0, "Method");
    EXPECT_EQ("", str(map[4]));
    EXPECT_EQ(1, map.m_values.size());
    EXPECT_EQ(1, map.m_texts.size());
    map[4] = "first";
    map[4] = "second";
    EXPECT_EQ("second", str(map.valueToString(4)));
    EXPECT_EQ(1, map.m_values.size());
}

TEST(RkMapDefault, NamesForYesAndNo) {
    rkMapDefault<bool> map(false, "AlignVectorsBy");
    map[true] = "byte";
    map[false] = "element";
    EXPECT_EQ("AlignVectorsBy = element", str(map.description()));
    map.translate("B");
    EXPECT_TRUE(map.value());
    EXPECT_THROW(map.translate("yes"), rkException);
}
