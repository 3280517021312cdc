// rkinfotest_test.cpp - tests of the report on processor, operating system and computer.

#include "rkinfotest.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "capture.h"
#include "rkhost.h"
#include "scriptedcpu.h"

namespace {

template <class Test>
class Named : public Test {
public:
    Named()
        : Test(static_cast<rkFuncLoop>(nullptr), static_cast<rkFuncStat>(nullptr), "__rkInfo", "../src/rk",
               "__rkInfoTest/information") {}
};
using CpuReport = Named<__rkTarvoCpuTest>;

const std::string kStars(79, '*'), kDouble(79, '='), kSingle(79, '-');

// What a section prints at an output level, with the message at level 1 as in a run.
template <class Print>
std::string printed(Print print, OutputLevel level = 1) {
    CaptureLog log(level);
    g_ostrm << MsgError;
    print();
    g_ostrm << EndMessage;
    return log.text();
}

std::vector<std::string> linesOf(std::string const &text) {
    std::istringstream in(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

void expectLines(std::string const &text, std::vector<std::string> const &expected) {
    ASSERT_FALSE(text.empty());
    EXPECT_EQ(text.back(), '\n');
    std::vector<std::string> lines = linesOf(text);
    for (size_t i = 0; i < lines.size() && i < expected.size(); ++i)
        EXPECT_EQ(lines[i], expected[i]) << "line " << i;
    EXPECT_EQ(lines.size(), expected.size());
}

// Family 6, model 26, stepping 5, with all of the selected features but SSE4.1 and x2APIC.
void scriptMeridian(ScriptedCpu &cpu) {
    cpu.brand("Tarvo(R) Meridian(R) scripted");
    cpu.at(1) = {1u << 16 | 10u << 4 | 6u << 8 | 5u, 16u << 16 | 0x17u, 1u | 1u << 9 | 1u << 20,
                 1u << 23 | 1u << 25 | 1u << 26 | 1u << 28};
    cpu.setBit(0x80000001u, CpuidEDX, 29);
    cpu.cache(0, 1, 64, 64, 1, 8);
    cpu.at(4, 0)[CpuidEAX] |= 1u << 5 | 1u << 8 | 1u << 14;
    cpu.cache(1, 3, 8192, 128, 2, 16);
    cpu.at(4, 1)[CpuidEAX] |= 3u << 5 | 1u << 9 | 4095u << 14;
    cpu.at(4, 1)[CpuidEDX] = 3;
    cpu.cores(8);
    cpu.set(0x80000006u, 0, {0, 0, 256u << 16 | 6u << 12 | 64u, 0});
}

} // namespace

// ---- the whole report ---------------------------------------------------------

TEST(RkInfoTest, WholeReportOfAScriptedProcessor) {
    ScriptedCpu cpu;
    scriptMeridian(cpu);
    CpuReport test;
    expectLines(printed([&] { test.printInformation(); }, 7),
                {
                    kStars,
                    "    Tarvo(R) Processor Identification",
                    "    Got by CPUID Instruction Functions",
                    kStars,
                    "",
                    "Largest Standard Function 0x00000004",
                    "Largest Extended Function 0x80000008",
                    "Vendor-ID      GenuineTarvo",
                    "Brand String   Tarvo(R) Meridian(R) scripted",
                    "",
                    kDouble,
                    "    Processor Identification Signature",
                    "",
                    "Family   6",
                    "Model    26",
                    "Stepping 5",
                    "Type     0",
                    "Brand ID 0x17",
                    "",
                    kDouble,
                    "    Selected Feature Flags",
                    "",
                    "MMX        1 - MMX instructions",
                    "SSE        1 - SSE instructions",
                    "SSE2       1 - SSE2 instructions",
                    "SSE3       1 - SSE3 instructions",
                    "SSSE3      1 - SSSE3 instructions",
                    "SSE4.1     0 - SSE4.1 instructions",
                    "SSE4.2     1 - SSE4.2 instructions",
                    "x2APIC     0 - Interrupt controller with 32-bit identifiers",
                    "Tarvo(R)64 1 - 64-bit architecture",
                    "",
                    kDouble,
                    "    Multi Threading Features",
                    "",
                    "Several logical processors or cores are supported",
                    "Logical Processors 16 - Number of logical processors per physical package",
                    "Cores per Package  8 - Maximum number of processor cores per package",
                    "",
                    kDouble,
                    "    Deterministic Cache Parameters",
                    "",
                    kSingle,
                    "    Data Cache",
                    "",
                    "Cache Level       1",
                    "Cache Size Kb     32",
                    "Threads Sharing   2    - Maximum number of threads sharing this cache",
                    "Number of Sets    64",
                    "Line Size         64   - System coherency line size",
                    "Line Partitions   1    - Physical line partitions",
                    "Associativity     8    - Ways of associativity",
                    "Self Initializing cache level",
                    "",
                    kSingle,
                    "    Unified Cache",
                    "",
                    "Cache Level       3",
                    "Cache Size Kb     32768",
                    "Threads Sharing   4096 - Maximum number of threads sharing this cache",
                    "Number of Sets    8192",
                    "Line Size         128  - System coherency line size",
                    "Line Partitions   2    - Physical line partitions",
                    "Associativity     16   - Ways of associativity",
                    "Fully Associative cache",
                    "Cache is inclusive to lower cache levels",
                    "WBINVD/INVD behavior on lower level caches",
                    "",
                    kDouble,
                    "    Extended L2 Cache Features",
                    "",
                    "L2 Cache Size Kb       256",
                    "L2 Cache Line Size     64",
                    "L2 Cache Associativity 8-Way",
                    kStars,
                });
}

TEST(RkInfoTest, AbsentLeavesLeaveTheirSectionsOut) {
    ScriptedCpu cpu("GenuineTarvo", 0, 0);
    CpuReport test;
    expectLines(printed([&] { test.printInformation(); }, 7), {
                                                                  kStars,
                                                                  "    Tarvo(R) Processor Identification",
                                                                  "    Got by CPUID Instruction Functions",
                                                                  kStars,
                                                                  "",
                                                                  "Largest Standard Function 0x00000000",
                                                                  "Largest Extended Function 0x00000000",
                                                                  "Vendor-ID      GenuineTarvo",
                                                                  kStars,
                                                              });
}

TEST(RkInfoTest, RealProcessorGetsItsReportWhoeverMadeIt) {
    CpuReport test;
    std::vector<std::string> lines = linesOf(printed([&] { test.printInformation(); }));
    ASSERT_GT(lines.size(), 20u);
    EXPECT_EQ(lines.front(), kStars);
    EXPECT_EQ(lines[1], "    Tarvo(R) Processor Identification");
    EXPECT_EQ(lines.back(), kStars);
}

// ---- header -------------------------------------------------------------------

TEST(RkInfoTest, LargestFunctionsNeedTheLevelOfResults) {
    ScriptedCpu cpu;
    cpu.brand("Brand");
    CpuReport test;
    EXPECT_EQ(printed([&] { test.printHeader(); }, 1),
              kStars + "\n    Tarvo(R) Processor Identification\n    Got by CPUID Instruction Functions\n" +
                  kStars + "\n\nVendor-ID      GenuineTarvo\nBrand String   Brand\n");
}

TEST(RkInfoTest, HeaderGivesTheMessageLevelBack) {
    ScriptedCpu cpu;
    CpuReport test;
    CaptureLog log(7);
    g_ostrm << MsgWarning;
    test.printHeader();
    EXPECT_EQ(g_ostrm.msgLevel(), MsgWarning);
}

TEST(RkInfoTest, AnotherVendorIsWarnedAbout) {
    ScriptedCpu cpu("SomeoneElses", 0, 0);
    CpuReport test;
    EXPECT_EQ(printed([&] { test.printHeader(); }),
              kStars +
                  "\n    Tarvo(R) Processor Identification\n    Got by CPUID Instruction Functions\n"
                  "\n    ATTENTION! It is not Genuine Tarvo processor.\n"
                  "    Information below may be inadequate.\n" +
                  kStars + "\n\nVendor-ID      SomeoneElses\n");
}

TEST(RkInfoTest, EmptyBrandHasNoLine) {
    ScriptedCpu cpu;
    cpu.brand("");
    CpuReport test;
    EXPECT_EQ(printed([&] { test.printHeader(); }).find("Brand String"), std::string::npos);
}

TEST(RkInfoTest, BrandOf48CharactersIsWhole) {
    ScriptedCpu cpu;
    std::string brand = "123456789 123456789 123456789 123456789 12345678";
    cpu.brand(brand.c_str());
    CpuReport test;
    EXPECT_NE(printed([&] { test.printHeader(); }).find("Brand String   " + brand + "\n"), std::string::npos);
}

// ---- signature and flags ------------------------------------------------------

TEST(RkInfoTest, SignatureAddsTheExtendedFieldsAlways) {
    ScriptedCpu cpu;
    cpu.at(1) = {3u << 20 | 2u << 16 | 2u << 12 | 5u << 8 | 7u << 4 | 9u, 0, 0, 0};
    CpuReport test;
    EXPECT_EQ(printed([&] { test.printSignature(); }),
              "\n" + kDouble +
                  "\n    Processor Identification Signature\n\n"
                  "Family   8\nModel    39\nStepping 9\nType     2\n");
}

TEST(RkInfoTest, BrandIdHasTwoHexadecimalDigits) {
    ScriptedCpu cpu;
    cpu.at(1)[CpuidEBX] = 0xffffff0au;
    CpuReport test;
    EXPECT_NE(printed([&] { test.printSignature(); }).find("Brand ID 0x0A\n"), std::string::npos);
}

// ---- threads ------------------------------------------------------------------

static std::string threads(unsigned int logical, bool htt, unsigned int largest) {
    ScriptedCpu cpu("GenuineTarvo", largest);
    cpu.at(1) = {0, logical << 16, 0, htt ? 1u << 28 : 0};
    cpu.cores(2);
    CpuReport test;
    return printed([&] { test.printMultiThreading(); });
}

static const std::string kThreadTitle = "\n" + kDouble + "\n    Multi Threading Features\n\n";

TEST(RkInfoTest, OneLogicalProcessorIsNotSeveral) {
    EXPECT_EQ(threads(1, true, 3),
              kThreadTitle +
                  "Several logical processors or cores are not supported\n"
                  "Logical Processors 1 - Number of logical processors per physical package\n");
}

TEST(RkInfoTest, SeveralLogicalProcessorsNeedTheFlag) {
    EXPECT_EQ(threads(2, false, 3),
              kThreadTitle +
                  "Several logical processors or cores are not supported\n"
                  "Logical Processors 2 - Number of logical processors per physical package\n");
    EXPECT_EQ(threads(2, true, 3),
              kThreadTitle +
                  "Several logical processors or cores are supported\n"
                  "Logical Processors 2 - Number of logical processors per physical package\n");
}

TEST(RkInfoTest, CoresAreToldWhereLeaf4Exists) {
    EXPECT_EQ(threads(2, true, 4),
              kThreadTitle +
                  "Several logical processors or cores are supported\n"
                  "Logical Processors 2 - Number of logical processors per physical package\n"
                  "Cores per Package  2 - Maximum number of processor cores per package\n");
}

// ---- caches -------------------------------------------------------------------

TEST(RkInfoTest, CacheSectionWithoutCachesIsItsTitle) {
    ScriptedCpu cpu;
    CpuReport test;
    EXPECT_EQ(printed([&] { test.printCacheParms(); }),
              "\n" + kDouble + "\n    Deterministic Cache Parameters\n");
}

TEST(RkInfoTest, CacheBehindTheLastPrintsNothing) {
    ScriptedCpu cpu;
    cpu.cache(0, 1, 64, 64, 1, 8);
    bool more = true;
    EXPECT_EQ(printed([&] { more = __rkTarvoCpuTest::printCacheParms(1); }), "");
    EXPECT_FALSE(more);
}

TEST(RkInfoTest, TypesOfCachesHaveNames) {
    char const *const names[] = {
        "", "Data Cache", "Instruction Cache", "Unified Cache", "Cache Type 4", "Cache Type 5"};
    for (unsigned int type = 1; type < 6; ++type) {
        ScriptedCpu cpu;
        cpu.cache(0, type, 64, 64, 1, 8);
        bool more = false;
        std::string text = printed([&] { more = __rkTarvoCpuTest::printCacheParms(0); });
        EXPECT_TRUE(more);
        EXPECT_EQ(linesOf(text)[2], std::string("    ") + names[type]);
    }
}

TEST(RkInfoTest, ListOfCachesOfABrokenProcessorEnds) {
    ScriptedCpu cpu;
    for (unsigned int i = 0; i < 100; ++i) cpu.cache(i, 1, 64, 64, 1, 8);
    CpuReport test;
    std::vector<std::string> lines = linesOf(printed([&] { test.printCacheParms(); }));
    EXPECT_EQ(lines.size(), 3u + 32 * 11);
}

TEST(RkInfoTest, LargestFieldsOfACacheDoNotOverflow) {
    ScriptedCpu cpu;
    cpu.set(4, 0, {1, 0xffffffffu, 0xffffffffu, 0});
    std::string text = printed([&] { __rkTarvoCpuTest::printCacheParms(0); });
    EXPECT_NE(text.find("Cache Size Kb     18014398509481984\n"), std::string::npos) << text;
    EXPECT_NE(text.find("Number of Sets    4294967296\n"), std::string::npos);
}

TEST(RkInfoTest, AssociativityOfL2InWords) {
    const std::pair<unsigned int, char const *> rows[] = {
        {0, "Disabled"}, {1, "Direct mapped"}, {2, "2-Way"},      {3, "code 0x03"},
        {4, "4-Way"},    {5, "code 0x05"},     {6, "8-Way"},      {7, "code 0x07"},
        {8, "16-Way"},   {9, "code 0x09"},     {14, "code 0x0E"}, {15, "Fully associative"}};
    for (auto const &row : rows) {
        ScriptedCpu cpu;
        cpu.set(0x80000006u, 0, {0, 0, 0xffffu << 16 | row.first << 12 | 0x0f20u, 0});
        CpuReport test;
        EXPECT_EQ(printed([&] { test.printL2Features(); }),
                  "\n" + kDouble +
                      "\n    Extended L2 Cache Features\n\n"
                      "L2 Cache Size Kb       65535\nL2 Cache Line Size     32\nL2 Cache Associativity " +
                      row.second + "\n");
    }
}

// ---- operating system and computer --------------------------------------------

TEST(RkInfoTest, OperatingSystemLine) {
    Named<__rkOSTest> test;
    EXPECT_EQ(printed([&] { test.printInformation(); }), std::string(" OS       : ") + rkOS().text() + "\n");
    EXPECT_STREQ(__rkOSTest::s_os, " OS       : ");
}

TEST(RkInfoTest, ComputerLine) {
    Named<__rkHostTest> test;
    EXPECT_EQ(printed([&] { test.printInformation(); }),
              std::string(" Computer : ") + rkHost().text() + "\n");
    EXPECT_STREQ(__rkHostTest::shost, " Computer : ");
}

TEST(RkInfoTest, LoopPrintsAtTheLevelOfErrorsAndSucceeds) {
    Named<__rkHostTest> test;
    CaptureLog log(MsgError); // the log stands at the level of results
    rkTest::m_currentResult = rkResNotRun;
    test.loopData();
    EXPECT_EQ(log.text(), std::string(" Computer : ") + rkHost().text() + "\n");
    EXPECT_EQ(rkTest::m_currentResult, rkResSuccess);
}
