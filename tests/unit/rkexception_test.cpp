// rkexception_test.cpp - the exception, and faults that become one.

#include <gtest/gtest.h>

#include <signal.h>
#include <string.h>

#include <string>

#include "faults.h"
#include "rkexception.h"

namespace {

int const g_times = 1000;

void nothing() {}

// The message of the exception that the fault becomes, or "" without a fault.
std::string caught(void (*fault)()) {
    rkSignalGuard guard;
    try {
        if (_setjmp(tsSignal::m_jmpbuf)) throw rkException(tsSignal::getInfo());
        fault();
    } catch (rkException &e) {
        return e.msg();
    }
    return "";
}

void expectEach(void (*fault)(), int times, int code, std::string const &text) {
    for (int i = 0; i < times; ++i) {
        tsSignal::m_code = 0;
        ASSERT_EQ(caught(fault), "--KEL. Signal: " + text) << i;
        ASSERT_EQ(tsSignal::code(), code) << i;
        ASSERT_EQ(tsSignal::m_guards, 0);
    }
}

char const *const g_fpe = "FP error, such as overflow, division by zero, invalid operation.";
char const *const g_ill = "Illegal instruction.";
char const *const g_segv = "Illegal storage access.";

char const *infoOf(int code) {
    tsSignal::m_code = code;
    return tsSignal::getInfo();
}

} // namespace

// ---- the exception ----------------------------------------------------------------

TEST(RkException, LiteralHasTheSignalPrefix) {
    rkException e("x");
    EXPECT_STREQ(e.msg(), "--KEL. Signal: x");
    EXPECT_STREQ(e.info(), "");
}

TEST(RkException, StringHasTheExceptionPrefix) {
    rkException e(rkString("x"));
    EXPECT_STREQ(e.msg(), "--KEL. Exception: x");
    EXPECT_STREQ(e.info(), "x");
}

TEST(RkException, LongTextsAreCut) {
    std::string text(1000, 'y');
    rkException e(rkString(text.c_str()));
    EXPECT_EQ(e.msg(), "--KEL. Exception: " + std::string(255 - 18, 'y'));
    EXPECT_EQ(e.info(), std::string(255, 'y'));
    rkException s(text.c_str());
    EXPECT_EQ(s.msg(), "--KEL. Signal: " + std::string(255 - 15, 'y'));
}

TEST(RkException, TextIsNoFormat) {
    EXPECT_STREQ(rkException("%s%n").msg(), "--KEL. Signal: %s%n");
    EXPECT_STREQ(rkException(rkString("%s%n")).info(), "%s%n");
}

TEST(RkException, NullTextIsEmpty) {
    EXPECT_STREQ(rkException(static_cast<char const *>(nullptr)).msg(), "--KEL. Signal: ");
}

TEST(RkException, IsCaughtAsAStandardException) {
    bool seen = false;
    try {
        throw rkException("x");
    } catch (std::exception &e) {
        seen = e.what() != nullptr;
    }
    EXPECT_TRUE(seen);
}

// ---- texts of signals ---------------------------------------------------------------

TEST(TsSignal, TextsOfSignals) {
    EXPECT_STREQ(infoOf(8), g_fpe);
    EXPECT_STREQ(infoOf(4), g_ill);
    EXPECT_STREQ(infoOf(11), g_segv);
    EXPECT_STREQ(infoOf(2), "Unknown exception");
    EXPECT_STREQ(infoOf(0), "Unknown exception");
}

TEST(TsSignal, HandlerJumpsToTheBuffer) {
    int result = _setjmp(tsSignal::m_jmpbuf);
    if (result == 0) tsSignal::sig_fpe(8, 0);
    EXPECT_EQ(result, -1);
    EXPECT_EQ(tsSignal::code(), 8);
}

// ---- faults -------------------------------------------------------------------------

TEST(TsSignal, NoFaultIsNoException) {
    EXPECT_EQ(caught(nothing), "");
}

TEST(TsSignal, AThousandWildWritesAreSurvived) {
    expectEach(writeWild, g_times, SIGSEGV, g_segv);
}

TEST(TsSignal, AThousandStackOverflowsAreSurvived) {
    expectEach(overflowStack, g_times, SIGSEGV, g_segv);
}

TEST(TsSignal, AThousandIllegalInstructionsAreSurvived) {
    expectEach(illegal, g_times, SIGILL, g_ill);
}

TEST(TsSignal, AThousandIntegerDivisionsByZeroAreSurvived) {
    expectEach(divideInteger, g_times, SIGFPE, g_fpe);
}

TEST(TsSignal, AThousandFloatingPointDivisionsByZeroAreSurvived) {
    expectEach(divideX87, g_times, SIGFPE, g_fpe);
}

TEST(TsSignal, KindsOfFaultsMayAlternate) {
    for (int i = 0; i < 20; ++i) {
        expectEach(overflowStack, 1, SIGSEGV, g_segv);
        expectEach(divideX87, 1, SIGFPE, g_fpe);
        expectEach(illegal, 1, SIGILL, g_ill);
        expectEach(writeWild, 1, SIGSEGV, g_segv);
    }
}

TEST(TsSignal, SignalThatWasSentIsCaughtToo) {
    EXPECT_EQ(caught([] { raise(SIGSEGV); }), std::string("--KEL. Signal: ") + g_segv);
}

// ---- guards -------------------------------------------------------------------------

TEST(RkSignalGuard, FaultAfterAnInnerGuardReachesTheOuterOne) {
    for (int i = 0; i < 100; ++i) {
        std::string text = caught([] {
            EXPECT_EQ(caught(nothing), "");
            illegal();
        });
        ASSERT_EQ(text, std::string("--KEL. Signal: ") + g_ill);
    }
}

TEST(RkSignalGuard, OuterGuardHoldsAfterAFaultInTheInnerOne) {
    std::string inner;
    static std::string *s_inner = &inner;
    std::string outer = caught([] {
        *s_inner = caught(illegal);
        writeWild();
    });
    EXPECT_EQ(inner, std::string("--KEL. Signal: ") + g_ill);
    EXPECT_EQ(outer, std::string("--KEL. Signal: ") + g_segv);
    EXPECT_EQ(tsSignal::m_guards, 0);
}

TEST(RkSignalGuard, InnerGuardEndedByAnExceptionGivesWay) {
    std::string text = caught([] {
        try {
            rkSignalGuard inner;
            throw rkException("inner");
        } catch (rkException &e) {
            EXPECT_STREQ(e.msg(), "--KEL. Signal: inner");
        }
        EXPECT_EQ(tsSignal::m_guards, 1);
        writeWild();
    });
    EXPECT_EQ(text, std::string("--KEL. Signal: ") + g_segv);
}

TEST(RkSignalGuard, EndBringsTheOuterBufferBack) {
    jmp_buf before;
    memset(&tsSignal::m_jmpbuf, 0x5A, sizeof before);
    memcpy(&before, &tsSignal::m_jmpbuf, sizeof before);
    EXPECT_EQ(caught(nothing), "");
    EXPECT_EQ(memcmp(&before, &tsSignal::m_jmpbuf, sizeof before), 0);
}

TEST(RkSignalGuard, FaultOutsideOfAnyGuardEndsTheProgram) {
    EXPECT_EXIT(writeWild(), testing::KilledBySignal(SIGSEGV), "");
    EXPECT_EXIT(illegal(), testing::KilledBySignal(SIGILL), "");
    EXPECT_EXIT(divideInteger(), testing::KilledBySignal(SIGFPE), "");
}

TEST(RkSignalGuard, FaultAfterTheGuardEndsTheProgram) {
    EXPECT_EXIT((caught(illegal), illegal()), testing::KilledBySignal(SIGILL), "");
}

TEST(RkSignalGuard, SignalSentOutsideOfAnyGuardEndsTheProgram) {
    EXPECT_EXIT(raise(SIGSEGV), testing::KilledBySignal(SIGSEGV), "");
}
