// rkparameterreading_test.cpp - tests of how a parameter gets its value: default, data, console, ini file.

#include <gtest/gtest.h>
#include <signal.h>

#include "consolescript.h"
#include "freshstart.h"
#include "rkdefault.h"
#include "text.h"

// Of the leak checker, where there is one.
extern "C" __attribute__((weak)) void __lsan_disable();
extern "C" __attribute__((weak)) void __lsan_enable();

namespace {

// The jump out of a fault passes over strings in use, which are lost: that is the price of surviving it.
class LostStrings {
public:
    LostStrings() {
        if (__lsan_disable) __lsan_disable();
    }
    ~LostStrings() {
        if (__lsan_enable) __lsan_enable();
    }
};

class LimitedParm : public rkDefault<int> {
public:
    using rkDefault<int>::rkDefault;
    rkString validString() const override { return "1..9"; }
};

// Its reading meets a fault of the hardware.
class FaultyParm : public rkDefault<int> {
public:
    using rkDefault<int>::rkDefault;
    void translate(rkString text) override {
        rkDefault<int>::translate(text);
        raise(SIGILL);
    }
};

} // namespace

TEST(RkParameter, ReadsFromData) {
    CaptureLog log;
    g_istrm.m_data.set("size", "24");
    rkDefault<int> parm(16, "size");
    EXPECT_EQ(&g_istrm, &parm.fromIStream(g_istrm));
    EXPECT_EQ(24, parm.value());
    EXPECT_EQ(" size = 24\n", log.text());
}

TEST(RkParameter, TakesTheDefaultWithoutAnySource) {
    CaptureLog log;
    rkDefault<int> parm(16, "size");
    parm.fromIStream(g_istrm);
    EXPECT_EQ(16, parm.value());
    EXPECT_EQ(rkIStream::FromDefault, g_istrm.m_source);
    EXPECT_EQ(" size = 16\n", log.text());
}

TEST(RkParameter, BadTextIsReportedAndTheValueStays) {
    CaptureLog log;
    g_istrm.m_data.set("size", "abc");
    rkDefault<int> parm(16, "size");
    parm.fromIStream(g_istrm);
    EXPECT_EQ(16, parm.value());
    EXPECT_EQ("-Invalid value of size = abc\n size = 16\n", log.text());
}

TEST(RkParameter, TypedJunkIsReportedAndNotAskedAgain) {
    CaptureLog log;
    ConsoleScript console("abc\n24\n");
    g_istrm.setIStream(&c_in);
    rkDefault<int> parm(16, "size");
    parm.fromIStream(g_istrm);
    EXPECT_EQ(16, parm.value());
    EXPECT_EQ("\n size [16] = ", console.questions());
    EXPECT_EQ("-Invalid value of size = abc\n size = 16\n", log.text());
}

TEST(RkParameter, AsksWithPromptAndDefault) {
    CaptureLog log;
    ConsoleScript console("7\n");
    g_istrm.setIStream(&c_in);
    LimitedParm parm(3, "row", "Length of row");
    parm.fromIStream(g_istrm);
    EXPECT_EQ(7, parm.value());
    EXPECT_EQ("\n Length of row {1..9} [3] = ", console.questions());
    EXPECT_EQ(" row = 7\n", log.text());
    EXPECT_EQ(rkIStream::FromConsole, g_istrm.m_source);
}

TEST(RkParameter, EmptyAnswerTakesTheDefault) {
    CaptureLog log;
    ConsoleScript console("\n");
    g_istrm.setIStream(&c_in);
    rkDefault<int> parm(16, "size");
    parm.fromIStream(g_istrm);
    EXPECT_EQ(16, parm.value());
    EXPECT_EQ(rkIStream::FromDefault, g_istrm.m_source);
}

TEST(RkParameter, EmptyNameIsNotRead) {
    CaptureLog log;
    ConsoleScript console("24\n");
    g_istrm.setIStream(&c_in);
    rkDefault<int> parm(16, "");
    parm.fromIStream(g_istrm);
    EXPECT_EQ(16, parm.value());
    EXPECT_EQ("", console.questions());
    EXPECT_EQ("", log.text());
}

TEST(RkParameter, NotReadableOnlyShowsItsDescription) {
    CaptureLog log;
    ConsoleScript console("24\n");
    g_istrm.setIStream(&c_in);
    g_istrm.m_data.set("size", "32");
    rkDefault<int> parm(16, "size");
    parm.m_readable = false;
    parm.fromIStream(g_istrm);
    EXPECT_EQ(16, parm.value());
    EXPECT_EQ("", console.questions());
    EXPECT_EQ(" size = 16\n", log.text());
}

TEST(RkParameter, ConsoleRaisesTheOutputLevelForTheQuestionAlone) {
    CaptureLog log(MsgError);
    ConsoleScript console("abc\n");
    rkDefault<int> parm(16, "size");
    g_istrm.setIStream(&c_in);
    parm.fromIStream(g_istrm);
    EXPECT_EQ("-Invalid value of size = abc\n size = 16\n", log.text());
    EXPECT_EQ(MsgError, g_ostrm.outLevel());
}

TEST(RkParameter, WithoutConsoleTheOutputLevelStays) {
    CaptureLog log(MsgError);
    g_istrm.m_data.set("size", "abc");
    rkDefault<int> parm(16, "size");
    parm.fromIStream(g_istrm);
    EXPECT_EQ("", log.text());
    EXPECT_EQ(MsgError, g_ostrm.outLevel());
}

TEST(RkParameter, NotReadableKeepsTheOutputLevelDown) {
    CaptureLog log(MsgError);
    ConsoleScript console("24\n");
    g_istrm.setIStream(&c_in);
    rkDefault<int> parm(16, "size");
    parm.m_readable = false;
    parm.fromIStream(g_istrm);
    EXPECT_EQ("", log.text());
}

TEST(RkParameter, FaultWhileReadingIsAMessageWithoutText) {
    CaptureLog log;
    g_istrm.m_data.set("size", "24");
    FaultyParm parm(16, "size");
    LostStrings lost;
    for (int time = 0; time < 3; ++time) parm.fromIStream(g_istrm);
    EXPECT_EQ("-\n size = 24\n-\n size = 24\n-\n size = 24\n", log.text());
}

TEST(RkParameter, FaultLeavesTheOuterGuardInForce) {
    CaptureLog log;
    g_istrm.m_data.set("size", "24");
    FaultyParm inner(16, "size");
    LostStrings lost;
    rkSignalGuard guard;
    std::string caught;
    try {
        if (_setjmp(tsSignal::m_jmpbuf)) throw rkException(tsSignal::getInfo());
        inner.fromIStream(g_istrm);
        raise(SIGFPE);
    } catch (rkException &e) {
        caught = e.msg();
    }
    EXPECT_EQ("--KEL. Signal: FP error, such as overflow, division by zero, invalid operation.", caught);
}
