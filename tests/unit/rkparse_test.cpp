// rkparse_test.cpp - cutting a text into words.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "rkparse.h"

namespace {

using Words = std::vector<std::string>;

Words split(std::string const &text, char const *separators) {
    rkStringList list;
    list.push_back("left over");
    int n = rkString(text.c_str()).parse(list, separators);
    Words words;
    for (rkString const &word : list) words.push_back(word.c_str());
    EXPECT_EQ(n, static_cast<int>(words.size()));
    return words;
}

// removeQuote one character at a time.
std::string removedSlowly(std::string word) {
    while (word.find("\"\"") != std::string::npos) word = word.substr(0, 1) + word.substr(2);
    return word;
}

std::string removed(std::string const &text, int quote) {
    rkParse parse("");
    parse.initParse(" ");
    parse.m_quote = quote;
    rkString word = text.c_str();
    parse.removeQuote(word);
    return word.c_str();
}

} // namespace

TEST(RkParse, CutsAtAnyOfTheSeparators) {
    EXPECT_EQ(split("a,b; c", ",; "), (Words{"a", "b", "c"}));
    EXPECT_EQ(split(",,a,,b,,", ","), (Words{"a", "b"}));
}

TEST(RkParse, NoWordsInEmptyTextOrSeparatorsAlone) {
    EXPECT_EQ(split("", " "), Words{});
    EXPECT_EQ(split("   ", " "), Words{});
    rkStringList list;
    EXPECT_EQ(rkString().parse(list, " "), 0);
}

TEST(RkParse, WithoutSeparatorsTheTextIsOneWord) {
    EXPECT_EQ(split("a b", ""), (Words{"a b"}));
}

TEST(RkParse, QuoteInsideAWordProtectsTheSeparators) {
    EXPECT_EQ(split("a x\"b c\" d", " "), (Words{"a", "x\"b c\"", "d"}));
}

TEST(RkParse, QuoteThatBeginsAWordProtectsNothing) {
    EXPECT_EQ(split("a \"b c\" d", " "), (Words{"a", "\"b", "c\" d"}));
}

TEST(RkParse, EmptyPairLeavesTheQuotationOpen) {
    EXPECT_EQ(split("a\"\" b c", " "), (Words{"a\" b c"}));
}

TEST(RkParse, QuoteAmongTheSeparatorsIsNotSpecial) {
    EXPECT_EQ(split("a\"b c\"\"d", "\""), (Words{"a", "b c", "d"}));
    rkParse parse("x");
    parse.initParse(" \"");
    EXPECT_EQ(parse.m_quote, -100);
}

TEST(RkParse, InitStartsAgain) {
    rkParse parse("a b");
    rkString word;
    parse.initParse(" ");
    EXPECT_TRUE(parse.nextWord(word));
    parse.initParse(" ");
    EXPECT_EQ(parse.m_pos, 0);
    EXPECT_EQ(parse.m_quote, -1);
    EXPECT_TRUE(parse.nextWord(word));
    EXPECT_STREQ(word.c_str(), "a");
}

TEST(RkParse, NextWordStopsBehindTheWordAndStaysAtTheEnd) {
    rkParse parse(" ab  ");
    rkString word = "old";
    parse.initParse(" ");
    EXPECT_TRUE(parse.nextWord(word));
    EXPECT_STREQ(word.c_str(), "ab");
    EXPECT_EQ(parse.m_pos, 3);
    EXPECT_FALSE(parse.nextWord(word));
    EXPECT_STREQ(word.c_str(), "");
    EXPECT_EQ(parse.m_pos, 3);
}

TEST(RkParse, SeparatorStateMovesWithTheQuotes) {
    rkParse parse("a\"b\"\"\"");
    parse.initParse("b");
    EXPECT_FALSE(parse.isSeparator(0));
    EXPECT_FALSE(parse.isSeparator(1));
    EXPECT_EQ(parse.m_quote, 1);
    EXPECT_FALSE(parse.isSeparator(2));
    EXPECT_FALSE(parse.isSeparator(3));
    EXPECT_EQ(parse.m_quote, -1);
    EXPECT_TRUE(parse.isSeparator(2));
    EXPECT_FALSE(parse.isSeparator(4));
    EXPECT_FALSE(parse.isSeparator(5));
    EXPECT_EQ(parse.m_quote, 0);
}

TEST(RkParse, IndexOutsideOfTheTextIsNoSeparator) {
    rkParse parse("abc");
    parse.initParse("abc");
    EXPECT_FALSE(parse.isSeparator(3));
    EXPECT_FALSE(parse.isSeparator(-1));
    EXPECT_TRUE(parse.isSeparator(2));
}

TEST(RkParse, RemovalIsAlwaysOfTheSecondCharacter) {
    EXPECT_EQ(removed("a\"\"b", -1), "a\"b");
    EXPECT_EQ(removed("abcd\"\"e", -1), "a\"e");
    EXPECT_EQ(removed("\"\"", 3), "\"");
    EXPECT_EQ(removed("a\"b", -1), "a\"b");
}

TEST(RkParse, NothingIsRemovedWhereQuotesAreNotSpecial) {
    EXPECT_EQ(removed("a\"\"b", -100), "a\"\"b");
}

TEST(RkParse, RemovalGivesWhatOneCharacterAtATimeGives) {
    std::mt19937 random(7);
    for (int i = 0; i < 20000; ++i) {
        std::string word;
        for (unsigned n = random() % 9; n > 0; --n) word += random() % 2 ? '"' : static_cast<char>('a' + n);
        ASSERT_EQ(removed(word, -1), removedSlowly(word)) << word;
    }
}

TEST(RkParse, SurplusWordsAreDroppedButCounted) {
    rkString a = "old", b = "old";
    EXPECT_EQ(rkString("x y z").parse(a, b, " "), 3);
    EXPECT_STREQ(a.c_str(), "x");
    EXPECT_STREQ(b.c_str(), "y");
}

TEST(RkParse, MissingWordsAreEmpty) {
    rkString a = "old", b = "old", c = "old";
    EXPECT_EQ(rkString("x").parse(a, b, c, " "), 1);
    EXPECT_STREQ(a.c_str(), "x");
    EXPECT_STREQ(b.c_str(), "");
    EXPECT_STREQ(c.c_str(), "");
}

TEST(RkParse, ThreeWords) {
    rkString a, b, c;
    EXPECT_EQ(rkString("x=y=z=t").parse(a, b, c, "="), 4);
    EXPECT_STREQ(c.c_str(), "z");
}

TEST(RkParse, TextMayBeOneOfTheOutputs) {
    rkString text = "key value", rest;
    EXPECT_EQ(text.parse(text, rest, " "), 2);
    EXPECT_STREQ(text.c_str(), "key");
    EXPECT_STREQ(rest.c_str(), "value");
}
