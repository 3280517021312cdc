// rkcommand_test.cpp - tests of rkcommand.

#include "rkcommand.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// "key:argument " of each key.
std::string shown(rkCommandList const &keys) {
    std::string text;
    for (rkCommandKey &key : keys) text += std::string(1, key.m_key) + ":" + key.m_arg.c_str() + " ";
    return text;
}

std::string keysOf(std::vector<std::string> args) {
    std::vector<char *> argv;
    for (std::string &arg : args) argv.push_back(arg.data());
    rkCommandList keys;
    keys.setArgs(static_cast<int>(argv.size()), argv.data());
    return shown(keys);
}

std::string argOf(rkString text, rkString next) {
    rkCommandKey key;
    return key.setArg(text, next) ? key.m_arg.c_str() : "no key";
}

TEST(RkCommand, KeyStringsBeginWithDashOrSlashAndHaveTwoCharacters) {
    EXPECT_TRUE(isKeyString("-B"));
    EXPECT_TRUE(isKeyString("/B"));
    EXPECT_TRUE(isKeyString("--"));
    EXPECT_FALSE(isKeyString("-"));
    EXPECT_FALSE(isKeyString("/"));
    EXPECT_FALSE(isKeyString(""));
    EXPECT_FALSE(isKeyString("B-"));
    EXPECT_FALSE(isKeyString("+B"));
}

TEST(RkCommand, KeyIsTheSecondCharacter) {
    rkCommandKey key;
    ASSERT_TRUE(key.setArg("/help", ""));
    EXPECT_EQ(key.m_key, 'h');
    EXPECT_STREQ(key.m_arg.c_str(), "elp");
}

TEST(RkCommand, NoKeyIsRefused) {
    rkCommandKey key;
    EXPECT_FALSE(key.setArg("file", "next"));
    EXPECT_FALSE(key.setArg("-", "next"));
}

TEST(RkCommand, ArgumentMayBeJoinedOrFollow) {
    EXPECT_EQ(argOf("-ifile", ""), "file");
    EXPECT_EQ(argOf("-i", "file"), "file");
    EXPECT_EQ(argOf("/i", "file"), "file");
    EXPECT_EQ(argOf("/ifile", ""), "file");
}

TEST(RkCommand, JoinedArgumentGoesBeforeTheNextWord) {
    EXPECT_EQ(argOf("-ifile", "other"), "file");
}

TEST(RkCommand, PrefixStaysInFrontOfTheArgument) {
    EXPECT_EQ(argOf("-f-", "abc"), "-abc");
    EXPECT_EQ(argOf("-f-abc", ""), "-abc");
    EXPECT_EQ(argOf("-f+", "abc"), "+abc");
    EXPECT_EQ(argOf("-f=", "abc"), "=abc");
    EXPECT_EQ(argOf("-f-", ""), "-");
}

TEST(RkCommand, OnlyOnePrefixIsTakenOff) {
    EXPECT_EQ(argOf("-f-+", "abc"), "-+");
}

TEST(RkCommand, SpellingsOfOneKeyAreTheSame) {
    EXPECT_EQ(keysOf({"-ifile"}), "i:file ");
    EXPECT_EQ(keysOf({"-i", "file"}), "i:file ");
    EXPECT_EQ(keysOf({"/i", "file"}), "i:file ");
    EXPECT_EQ(keysOf({"-f-", "abc"}), keysOf({"-f-abc"}));
}

TEST(RkCommand, SlashHelpEqualsDashHelp) {
    EXPECT_EQ(keysOf({"/h"}), keysOf({"-h"}));
}

TEST(RkCommand, KeysKeepTheirOrderAndDoubles) {
    EXPECT_EQ(keysOf({"-p1", "-B", "-p", "2", "-B"}), "p:1 B: p:2 B: ");
}

TEST(RkCommand, WordBehindAKeyIsConsumedWhateverTheKey) {
    EXPECT_EQ(keysOf({"-B", "word", "-v"}), "B:word v: ");
}

TEST(RkCommand, WordBehindAJoinedArgumentIsLost) {
    EXPECT_EQ(keysOf({"-ifile", "word", "-v"}), "i:file v: ");
}

TEST(RkCommand, StrayWordsAreDropped) {
    EXPECT_EQ(keysOf({"word", "-v"}), "v: ");
    EXPECT_EQ(keysOf({"-v", "a", "b", "c", "-B"}), "v:a B: ");
}

TEST(RkCommand, EmptyWordIsAnEmptyArgument) {
    EXPECT_EQ(keysOf({"-i", "", "-v"}), "i: v: ");
}

TEST(RkCommand, NextKeyIsNoArgument) {
    EXPECT_EQ(keysOf({"-N", "-5"}), "N: 5: ");
}

TEST(RkCommand, PathBehindABlankIsAKey) {
    EXPECT_EQ(keysOf({"-o", "/tmp/x"}), "o: t:mp/x ");
}

TEST(RkCommand, LineIsCutAtBlanksSemicolonsTabsAndLineEnds) {
    rkCommandList keys;
    keys.setArgs(" -B;-L\tPERF\r\n-v ");
    EXPECT_EQ(shown(keys), "B: L:PERF v: ");
}

TEST(RkCommand, EmptyLineHasNoKeys) {
    rkCommandList keys;
    keys.setArgs("");
    EXPECT_TRUE(keys.empty());
}

TEST(RkCommand, NoArgumentsGiveNoKeys) {
    rkCommandList keys;
    keys.setArgs(0, nullptr);
    EXPECT_TRUE(keys.empty());
}

TEST(RkCommand, KeyAndArgumentCanBeAddedApart) {
    rkCommandList keys;
    keys.setArg('f', "abc");
    keys.setArg('f', "-abc");
    keys.setArg(rkString("word"), rkString("next"));
    EXPECT_EQ(shown(keys), "f:abc f:-abc ");
}

TEST(RkCommand, LastOccurrenceWins) {
    rkCommandList keys;
    keys.setArgs("-pfirst -B -psecond");
    rkString arg("poison");
    EXPECT_TRUE(keys.getArg('p', arg));
    EXPECT_STREQ(arg.c_str(), "second");
}

TEST(RkCommand, AbsentKeyLeavesTheArgument) {
    rkCommandList keys;
    keys.setArgs("-B");
    rkString arg("poison");
    EXPECT_FALSE(keys.getArg('p', arg));
    EXPECT_STREQ(arg.c_str(), "poison");
    EXPECT_FALSE(keys.isKey('p'));
    EXPECT_TRUE(keys.isKey('B'));
}

TEST(RkCommand, KeysAreCaseSensitive) {
    rkCommandList keys;
    keys.setArgs("-b");
    EXPECT_FALSE(keys.isKey('B'));
}

TEST(RkCommand, LongArgumentIsKeptWhole) {
    std::string word(10000, 'x');
    EXPECT_EQ(keysOf({"-i" + word}), "i:" + word + " ");
    EXPECT_EQ(keysOf({"-i", word}), "i:" + word + " ");
}

TEST(RkCommand, BytesAboveAsciiAreKept) {
    EXPECT_EQ(keysOf({"-i\xc3\xa9\xff"}), "i:\xc3\xa9\xff ");
    EXPECT_EQ(keysOf({"-\xff", "x"}), "\xff:x ");
}

} // namespace
