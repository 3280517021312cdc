// rkparameter_test.cpp - tests of rkparameter, rkdefault, rkconversion and rkplaintypes.

#include <gtest/gtest.h>

#include "consolescript.h"
#include "freshstart.h"
#include "rkdefault.h"
#include "text.h"

namespace {

// The text of the exception that a statement throws, or "none".
template <class Step>
std::string thrownInfo(Step step) {
    try {
        step();
    } catch (rkException &e) {
        return e.info();
    }
    return "none";
}

std::string sizeText(char const *text) {
    KeliSize size = {-7, -7};
    rkString s(text);
    size << s;
    rkString out;
    out << size;
    return (s.failed() ? "failed " : "") + str(out);
}

std::string cell(rkCStream &table, int column) {
    rkString text("no such cell");
    table.getColm(column, text);
    return str(text);
}

// The root of all parameters says nothing about values.
class PlainParm : public rkParameter {
public:
    using rkParameter::rkParameter;
};

class FixedColumn : public rkDefault<int> {
public:
    using rkDefault<int>::rkDefault;
    int colmIndex() const override { return 5; }
};

class LimitedParm : public rkDefault<int> {
public:
    using rkDefault<int>::rkDefault;
    rkString validString() const override { return "1..9"; }
};

} // namespace

// ---- the root -----------------------------------------------------------------

TEST(RkParameter, DescriptionDefaultsToName) {
    EXPECT_EQ("size", str(PlainParm("size", "").m_descr));
    EXPECT_EQ("Size of block", str(PlainParm("size", "Size of block").m_descr));
}

TEST(RkParameter, StartsReadableAndNotDone) {
    PlainParm parm("size", "");
    EXPECT_FALSE(parm.m_done);
    EXPECT_TRUE(parm.m_readable);
    EXPECT_EQ(0, parm.m_flags);
    EXPECT_FALSE(parm.m_deprecated);
    EXPECT_EQ("", str(parm.m_deprecatedText));
}

TEST(RkParameter, RootHasNoValue) {
    PlainParm parm("size", "");
    EXPECT_EQ("", str(parm.valueString()));
    EXPECT_EQ("", str(parm.defaultString()));
    EXPECT_EQ("", str(parm.validString()));
    EXPECT_EQ("size = ", str(parm.description()));
    EXPECT_EQ(-1, parm.colmIndex());
    EXPECT_FALSE(parm.isDeprecatedParm());
    EXPECT_FALSE(parm.isDeprecatedValue());
    parm.m_deprecated = true;
    EXPECT_FALSE(parm.setDeprecatedFlag(true));
    EXPECT_TRUE(parm.m_deprecated);
}

TEST(RkParameter, PromptShowsValidTextInBraces) {
    EXPECT_EQ("Length of row", str(rkDefault<int>(1, "row", "Length of row").prompt()));
    EXPECT_EQ("Length of row {1..9}", str(LimitedParm(1, "row", "Length of row").prompt()));
}

TEST(RkParameter, PlainWalkHasOneValueAndCanStartAgain) {
    rkDefault<int> parm(3, "size");
    for (int walk = 0; walk < 2; ++walk) {
        EXPECT_TRUE(parm.firstValue());
        EXPECT_TRUE(parm.m_done);
        EXPECT_FALSE(parm.nextValue());
    }
    EXPECT_TRUE(parm.nextValue()) << "after its end a walk may start without a reset";
}

TEST(RkParameter, FirstValueCutsAWalkShort) {
    rkDefault<int> parm(3, "size");
    parm.firstValue();
    EXPECT_TRUE(parm.firstValue());
}

// ---- printing -----------------------------------------------------------------

TEST(RkParameter, PrintsNameAndValue) {
    CaptureLog log;
    rkDefault<int>(16, "size").toOStream(g_ostrm);
    rkDefault<int>(2, "step").toOStream(g_ostrm);
    EXPECT_EQ("size=16 step=2 ", log.text());
}

TEST(RkParameter, EmptyNamePrintsNothingAndWritesAnEmptyCell) {
    CaptureLog log;
    rkCStream table;
    rkDefault<int> parm(16, "");
    parm.toOStream(g_ostrm);
    parm.toCStream(table);
    parm.nameToCStream(table);
    EXPECT_EQ("", log.text());
    EXPECT_EQ(2, table.m_colmCount);
    EXPECT_EQ("", cell(table, 0));
    EXPECT_EQ("", cell(table, 1));
}

TEST(RkParameter, EmptyNameHidesDeprecatedTextAndQuotes) {
    rkCStream table;
    rkDefault<int> parm(16, "");
    parm.m_deprecated = true;
    parm.m_deprecatedText = "old";
    parm.m_flags = rkParameter::QuotedInTables;
    parm.toCStream(table);
    EXPECT_EQ("", cell(table, 0));
}

TEST(RkParameter, WritesValueAndNameToNextCells) {
    rkCStream table;
    rkDefault<int> parm(16, "size");
    parm.toCStream(table);
    parm.nameToCStream(table);
    EXPECT_EQ("16", cell(table, 0));
    EXPECT_EQ("size", cell(table, 1));
}

TEST(RkParameter, DeprecatedTextTakesThePlaceOfTheValue) {
    rkCStream table;
    rkDefault<int> parm(16, "size");
    parm.m_deprecated = true;
    parm.m_deprecatedText = "old";
    parm.m_flags = rkParameter::QuotedInTables;
    parm.toCStream(table);
    parm.nameToCStream(table);
    EXPECT_EQ("old", cell(table, 0));
    EXPECT_EQ("size", cell(table, 1));
}

TEST(RkParameter, QuotedValueFollowsABlank) {
    rkCStream table;
    rkDefault<int> parm(16, "size");
    parm.m_flags = rkParameter::QuotedInTables;
    parm.toCStream(table);
    parm.nameToCStream(table);
    EXPECT_EQ(" \"16\"", cell(table, 0));
    EXPECT_EQ("size", cell(table, 1));
}

TEST(RkParameter, OtherFlagsMeanNothing) {
    rkCStream table;
    rkDefault<int> parm(16, "size");
    parm.m_flags = ~rkParameter::QuotedInTables;
    parm.toCStream(table);
    EXPECT_EQ("16", cell(table, 0));
}

TEST(RkParameter, FixedColumnLeavesTheNextCellFree) {
    rkCStream table;
    FixedColumn parm(16, "factor");
    parm.toCStream(table);
    EXPECT_EQ("16", cell(table, 5));
    EXPECT_EQ(0, table.m_colmCount);
    parm.nameToCStream(table);
    EXPECT_EQ("factor", cell(table, 5));
}

// ---- stored values ------------------------------------------------------------

TEST(RkDefault, ResetZeroesTheValue) {
    rkDefault<int> parm(16, "size");
    parm.m_done = true;
    parm.reset();
    EXPECT_EQ(0, parm.value());
    EXPECT_FALSE(parm.m_done);
    EXPECT_EQ("size", str(parm.m_name));
}

TEST(RkDefault, InitStartsOver) {
    rkDefault<int> parm;
    EXPECT_EQ("", str(parm.m_name));
    parm.m_done = true;
    parm.m_readable = false;
    parm.m_flags = rkParameter::QuotedInTables;
    parm.m_deprecated = true;
    parm.init(16, "size", "Size of block");
    EXPECT_EQ(16, parm.value());
    EXPECT_EQ("size", str(parm.m_name));
    EXPECT_EQ("Size of block", str(parm.m_descr));
    EXPECT_FALSE(parm.m_done);
    EXPECT_TRUE(parm.m_readable);
    EXPECT_EQ(0, parm.m_flags);
    EXPECT_FALSE(parm.m_deprecated);
    parm.init(8, "side");
    EXPECT_EQ("side", str(parm.m_descr));
}

TEST(RkDefault, StubsOfTheFormWithoutTexts) {
    rkDefault_NSC<int> parm(16, "size");
    EXPECT_EQ("", str(parm.valueToString(16)));
    EXPECT_EQ("", str(parm.valueString()));
    rkString text("abc");
    EXPECT_EQ(0, parm.stringToValue(text));
    EXPECT_FALSE(text.failed());
    parm.translate("abc");
    EXPECT_EQ(0, parm.value());
}

TEST(RkDefault, EveryTypeHasAForm) {
    rkDefault_NSC<int> i;
    rkDefault_NSC<unsigned int> u;
    rkDefault_NSC<unsigned char> uc;
    rkDefault_NSC<signed char> sc;
    rkDefault_NSC<bool> b;
    rkDefault_NSC<KeliSize> size;
    EXPECT_EQ(0, i.value());
    EXPECT_EQ(0u, u.value());
    EXPECT_EQ(0, uc.value());
    EXPECT_EQ(0, sc.value());
    EXPECT_FALSE(b.value());
    EXPECT_EQ(0, size.value().width);
    EXPECT_EQ(0, size.value().height);
}

TEST(RkDefault, BadTextThrowsAndNamesTheParameter) {
    rkDefault<int> parm(16, "size");
    EXPECT_EQ("Invalid value of size = abc", thrownInfo([&] { parm.translate("abc"); }));
    EXPECT_EQ(16, parm.value());
    EXPECT_EQ("none", thrownInfo([&] { parm.translate("12"); }));
    EXPECT_EQ(12, parm.value());
}

TEST(RkDefault, DeprecatedValueIsFoundByItsText) {
    rkDefault<int> parm(16, "size");
    EXPECT_FALSE(parm.isDeprecatedParm());
    parm.addDeprecated(8, "eight");
    parm.addDeprecated(16, "sixteen");
    parm.addDeprecated(16, "never reached");
    EXPECT_TRUE(parm.isDeprecatedParm());
    EXPECT_FALSE(parm.isDeprecatedValue());
    EXPECT_TRUE(parm.setDeprecatedFlag(true));
    EXPECT_TRUE(parm.m_deprecated);
    EXPECT_EQ("sixteen", str(parm.m_deprecatedText));
}

TEST(RkDefault, CurrentValueClearsTheDeprecatedMark) {
    rkDefault<int> parm(16, "size");
    parm.addDeprecated(8, "eight");
    parm.m_deprecated = true;
    EXPECT_FALSE(parm.setDeprecatedFlag(true));
    EXPECT_FALSE(parm.m_deprecated);
}

TEST(RkDefault, DeprecatedMarkCanBeTakenOff) {
    rkDefault<int> parm(8, "size");
    parm.addDeprecated(8, "eight");
    EXPECT_TRUE(parm.setDeprecatedFlag(true));
    EXPECT_FALSE(parm.setDeprecatedFlag(false));
    EXPECT_FALSE(parm.m_deprecated);
}

TEST(RkDefault, WithoutTextsAnyValueEqualsTheFirstDeprecatedOne) {
    rkDefault_NSC<int> parm(16, "size");
    parm.addDeprecated(8, "eight");
    EXPECT_TRUE(parm.setDeprecatedFlag(true));
}

// ---- text forms ---------------------------------------------------------------

TEST(RkConversion, IntegersInDecimal) {
    EXPECT_EQ("-5", str(rkValueToString<int>(-5)));
    EXPECT_EQ("4294967295", str(rkValueToString<unsigned int>(4294967295u)));
    EXPECT_EQ("200", str(rkValueToString<unsigned char>(200)));
    EXPECT_EQ("-56", str(rkValueToString<signed char>(-56)));
}

template <class T>
T valueOf(char const *text) {
    rkString s(text);
    T value = rkStringToValue<T>(s);
    EXPECT_FALSE(s.failed()) << text;
    return value;
}

TEST(RkConversion, IntegersFromText) {
    EXPECT_EQ(12, valueOf<int>("12"));
    EXPECT_EQ(16, valueOf<int>("0x10"));
    EXPECT_EQ(4294967295u, valueOf<unsigned int>("4294967295"));
    EXPECT_EQ(255, valueOf<unsigned char>("0xff"));
    EXPECT_EQ(-1, valueOf<signed char>("-1"));
}

TEST(RkConversion, SmallIntegersAreCutWithoutACheck) {
    EXPECT_EQ(44, valueOf<unsigned char>("300"));
    EXPECT_EQ(-56, valueOf<signed char>("200"));
    EXPECT_EQ(4294967295u, valueOf<unsigned int>("-1"));
    EXPECT_EQ(1u, valueOf<unsigned int>("4294967297"));
}

TEST(RkConversion, BlankTextReadsAsZero) {
    EXPECT_EQ(0, valueOf<int>(""));
    EXPECT_EQ(0u, valueOf<unsigned int>(" "));
}

TEST(RkConversion, JunkFails) {
    rkString text("abc");
    rkStringToValue<unsigned char>(text);
    EXPECT_TRUE(text.failed());
}

TEST(KeliSize, PrintsWidthAndHeight) {
    rkString text("size ");
    text << KeliSize{16, 8};
    EXPECT_EQ("size 16x8", str(text));
}

TEST(KeliSize, AnySeparatorsMakeOneSize) {
    EXPECT_EQ("16x8", sizeText("16x8"));
    EXPECT_EQ("16x8", sizeText("16,8"));
    EXPECT_EQ("16x8", sizeText("{16 8}"));
    EXPECT_EQ("16x8", sizeText("(16,8)"));
}

TEST(KeliSize, ThirdWordIsIgnored) {
    EXPECT_EQ("16x8", sizeText("16x8x4"));
    EXPECT_EQ("16x8", sizeText("16x8xabc"));
}

TEST(KeliSize, CapitalXIsNoSeparator) {
    EXPECT_EQ("failed 16x0", sizeText("16X8"));
}

TEST(KeliSize, OneNumberFails) {
    EXPECT_EQ("failed 16x0", sizeText("16"));
    EXPECT_EQ("failed 0x0", sizeText("0"));
}

TEST(KeliSize, EmptyTextFails) {
    EXPECT_EQ("failed 0x0", sizeText(""));
}

TEST(KeliSize, SidesMustBePositive) {
    EXPECT_EQ("failed 0x8", sizeText("0x8"));
    EXPECT_EQ("failed 16x0", sizeText("16x0"));
    EXPECT_EQ("failed -16x8", sizeText("-16x8"));
    EXPECT_EQ("failed 16x-8", sizeText("16x-8"));
}

TEST(KeliSize, JunkInEitherSideFails) {
    EXPECT_EQ("failed -7x8", sizeText("a,8"));
    EXPECT_EQ("failed 16x-7", sizeText("16,b"));
}

TEST(KeliSize, FailureOfAnEarlierTextIsForgotten) {
    KeliSize size = {0, 0};
    rkString text("16x8");
    text.m_failed = true;
    size << text;
    EXPECT_FALSE(text.failed());
}

TEST(KeliSize, ParameterOfASize) {
    rkDefault<KeliSize> parm({16, 16}, "block");
    parm.translate("32x8");
    EXPECT_EQ("32x8", str(parm.valueString()));
    EXPECT_EQ("Invalid value of block = 16", thrownInfo([&] { parm.translate("16"); }));
    EXPECT_EQ("32x8", str(parm.valueString()));
}
