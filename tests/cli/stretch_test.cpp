// stretch_test.cpp - nothing but the call stands between the two reads of the counter in the built program.

#include "stretch.h"

#include <gtest/gtest.h>

#include <sstream>

#include "../kelvara/command.h"

using std::string;
using std::vector;

namespace {

// The instructions of a static function of the program, without addresses. name is the linker's.
vector<string> instructionsOf(string const &name) {
    vector<string> instructions;
    for (string const &line : linesOf(OBJDUMP " -d --no-show-raw-insn --disassemble=" + name + " " RAKOVA)) {
        size_t tab = line.find(":\t");
        if (tab == string::npos) continue;
        string text = line.substr(tab + 2);
        text.erase(text.find_last_not_of(" \t") + 1);
        instructions.push_back(text);
    }
    return instructions;
}

// _ZL and the length of the name stand in front of a static function's name.
string linkerName(string const &name, string const &arguments) {
    return "_ZL" + std::to_string(name.length()) + name + arguments;
}

string listing(vector<string> const &instructions) {
    string text;
    for (string const &instruction : instructions) text += "    " + instruction + "\n";
    return text;
}

void expectClean(string const &function, Stretch kind) {
    const bool loop = kind == Stretch::Loop;
    const string name = linkerName("tim_" + function + (loop ? "_loop" : "_stat"), loop ? "iPx" : "PiPx");
    vector<string> all = instructionsOf(name);
    ASSERT_FALSE(all.empty()) << name << " is not in the program";
    vector<string> stretch = measuredStretch(all, function);
    ASSERT_FALSE(stretch.empty()) << listing(all);
    EXPECT_EQ(intruder(stretch, function, kind), "") << listing(stretch);
}

// What the compiler makes of the two loops.
const vector<string> cleanSingle = {
    "shl    $0x20,%rdx",
    "mov    0x5d0a(%rip),%r9d        # c9b8 <_ZL12g_sad_mcType>",
    "mov    %eax,%eax",
    "mov    0x5d09(%rip),%ecx        # c9c0 <_ZL16g_sad_srcRefStep>",
    "mov    %rdx,%rbx",
    "lea    0x5cf2(%rip),%r8        # c9bc <_ZL9g_sad_dst>",
    "mov    0x5cfb(%rip),%rdx        # c9cc <_ZL13g_sad_pSrcRef>",
    "or     %rax,%rbx",
    "call   4f30 <keliF@plt>",
    "mov    %eax,%ecx",
};

const vector<string> cleanLoop = {
    "shl    $0x20,%rdx",
    "mov    %eax,%eax",
    "or     %rax,%rdx",
    "mov    %rdx,%r13",
    "test   %ebx,%ebx",
    "jle    6cd0 <_ZL14tim_keliF_loopiPx+0x90>",
    "lea    0x5cf2(%rip),%r12        # c9bc <_ZL9g_sad_dst>",
    "nopl   0x0(%rax)",
    "mov    0x5d0a(%rip),%r9d        # c9b8 <_ZL12g_sad_mcType>",
    "mov    %r12,%r8",
    "call   4f30 <keliF@plt>",
    "mov    %eax,%ebp",
    "sub    $0x1,%ebx",
    "jne    6ca0 <_ZL14tim_keliF_loopiPx+0x60>",
};

// The judgement on a clean stretch into which text is put in front of the call, or behind it.
string withIntruder(vector<string> stretch, string const &text, bool behind) {
    auto call = stretch.begin();
    while (call->compare(0, 4, "call") != 0) ++call;
    stretch.insert(behind ? call + 1 : call, text);
    return intruder(stretch, "keliF", stretch.size() > 12 ? Stretch::Loop : Stretch::Single);
}

void expectIntruder(string const &text) {
    for (vector<string> const &clean : {cleanSingle, cleanLoop}) {
        EXPECT_EQ(withIntruder(clean, text, false), text) << "in front of the call";
        EXPECT_EQ(withIntruder(clean, text, true), text) << "behind the call";
    }
}

} // namespace

// ---- the built program -----------------------------------------------------------------

TEST(MeasuredStretch, TheManualLoopHoldsCallArgumentsAndCount) {
    expectClean("keliSAD16x16_8u32s", Stretch::Loop);
    expectClean("keliSAD16x8_8u32s_C1R", Stretch::Loop);
    expectClean("keliEdgesDetect16x16_8u_C1R", Stretch::Loop);
}

TEST(MeasuredStretch, TheStatisticLoopHoldsCallAndArguments) {
    expectClean("keliSAD16x16_8u32s", Stretch::Single);
    expectClean("keliSAD16x8_8u32s_C1R", Stretch::Single);
    expectClean("keliEdgesDetect16x16_8u_C1R", Stretch::Single);
}

// ---- the judge ---------------------------------------------------------------------------

TEST(StretchJudge, PassesWhatTheCompilerMakesOfTheLoops) {
    EXPECT_EQ(intruder(cleanSingle, "keliF", Stretch::Single), "");
    EXPECT_EQ(intruder(cleanLoop, "keliF", Stretch::Loop), "");
}

TEST(StretchJudge, RefusesAStore) {
    expectIntruder("mov    %rdx,0x8(%rsp)");
    expectIntruder("mov    %eax,0x5d0a(%rip)        # c9b8 <_ZL12g_sad_mcType>");
    expectIntruder("movl   $0x0,0xc(%rsp)");
    expectIntruder("movups %xmm0,(%rsp)");
    expectIntruder("push   %rbx");
}

TEST(StretchJudge, RefusesASecondCall) {
    EXPECT_EQ(withIntruder(cleanSingle, "call   4f30 <keliF@plt>", true), "call   4f30 <keliF@plt>");
    EXPECT_EQ(withIntruder(cleanLoop, "call   4f30 <keliF@plt>", true), "call   4f30 <keliF@plt>");
    expectIntruder("call   4f40 <clock@plt>");
    expectIntruder("call   *0x18(%rax)");
}

TEST(StretchJudge, RefusesTheCallOfAnotherFunction) {
    vector<string> stretch = cleanSingle;
    stretch[8] = "call   4f30 <keliFF@plt>";
    EXPECT_EQ(intruder(stretch, "keliF", Stretch::Single), stretch[8]);
}

TEST(StretchJudge, RefusesAStretchWithoutTheCall) {
    vector<string> stretch(cleanSingle.begin(), cleanSingle.begin() + 8);
    EXPECT_EQ(intruder(stretch, "keliF", Stretch::Single), "no call");
    EXPECT_EQ(intruder({}, "keliF", Stretch::Loop), "no call");
}

TEST(StretchJudge, RefusesTheControlState) {
    expectIntruder("fxsave 0x40(%rsp)");
    expectIntruder("fnstcw 0x6(%rsp)");
    expectIntruder("stmxcsr 0x8(%rsp)");
    expectIntruder("ldmxcsr 0x8(%rsp)");
}

TEST(StretchJudge, RefusesSerialisingInstructions) {
    expectIntruder("lfence");
    expectIntruder("mfence");
    expectIntruder("cpuid");
    expectIntruder("rdtscp");
}

TEST(StretchJudge, RefusesALockPrefix) {
    expectIntruder("lock addl $0x1,0x8(%rsp)");
    expectIntruder("lock xadd %eax,(%rdx)");
    expectIntruder("xchg   %eax,(%rdx)");
}

TEST(StretchJudge, RefusesArithmetic) {
    expectIntruder("add    %r14,%rdx");
    expectIntruder("add    $0x1,%r15d");
    expectIntruder("imul   %rdx,%rax");
    expectIntruder("inc    %eax");
    expectIntruder("addl   $0x1,0xc(%rsp)");
    expectIntruder("subl   $0x1,0xc(%rsp)");
    expectIntruder("xor    %eax,%edx");
    expectIntruder("shl    $0x3,%rdx");
    expectIntruder("pxor   %xmm0,%xmm0");
}

TEST(StretchJudge, RefusesASecondJoiningOfTheReading) {
    expectIntruder("shl    $0x20,%rdx");
    expectIntruder("or     %rax,%rdx");
}

TEST(StretchJudge, RefusesASecondCount) {
    EXPECT_EQ(withIntruder(cleanLoop, "sub    $0x1,%r8d", true), "sub    $0x1,%ebx");
    EXPECT_EQ(withIntruder(cleanLoop, "test   %eax,%eax", false), "test   %eax,%eax");
    EXPECT_EQ(withIntruder(cleanLoop, "test   %eax,%eax", true), "test   %eax,%eax");
    EXPECT_EQ(withIntruder(cleanLoop, "js     6cd0 <x+0x10>", true), "js     6cd0 <x+0x10>");
}

TEST(StretchJudge, RefusesASingleCallWithACount) {
    expectIntruder("cmp    (%r12),%r15d");
    EXPECT_EQ(withIntruder(cleanSingle, "sub    $0x1,%ebx", true), "sub    $0x1,%ebx");
    EXPECT_EQ(withIntruder(cleanSingle, "jne    6ca0 <x+0x60>", true), "jne    6ca0 <x+0x60>");
    EXPECT_EQ(withIntruder(cleanSingle, "test   %ebx,%ebx", false), "test   %ebx,%ebx");
}

TEST(StretchJudge, RefusesALoadBehindTheCall) {
    string load = "mov    0x5d0a(%rip),%r9d        # c9b8 <_ZL12g_sad_mcType>";
    EXPECT_EQ(withIntruder(cleanSingle, load, true), load);
    EXPECT_EQ(withIntruder(cleanLoop, load, true), load);
    EXPECT_EQ(withIntruder(cleanLoop, "mov    %eax,%r14d", true), "mov    %eax,%ebp") << "the status once";
}

TEST(StretchJudge, RefusesALoadThatPassesNoArgument) {
    expectIntruder("mov    0x8(%rsp),%rbx");
    expectIntruder("mov    (%r12),%eax");
    expectIntruder("movdqa 0x10(%rsp),%xmm0");
}

TEST(StretchJudge, FindsTheStretchThatHoldsTheCall) {
    vector<string> all = {"push   %rbx",
                          "call   4f30 <keliF@plt>",
                          "rdtsc",
                          "mov    %eax,%eax",
                          "call   4f30 <keliF@plt>",
                          "rdtsc",
                          "add    %r14,%rdx",
                          "rdtsc",
                          "ret"};
    EXPECT_EQ(measuredStretch(all, "keliF"), (vector<string>{all[3], all[4]}));
}

TEST(StretchJudge, FindsNoStretchWithoutTwoReads) {
    EXPECT_TRUE(measuredStretch({"rdtsc", "call   4f30 <keliF@plt>"}, "keliF").empty());
    EXPECT_TRUE(measuredStretch({"call   4f30 <keliF@plt>", "rdtsc", "ret", "rdtsc"}, "keliF").empty());
    EXPECT_TRUE(
        measuredStretch({"rdtsc", "call   4f30 <keliF@plt>", "rdtsc", "call   4f30 <keliF@plt>", "rdtsc"},
                        "keliF")
            .empty())
        << "two of them";
}
