// rkpriority_test.cpp - tests of the scheduling priority, each in a process of its own.

#include <gtest/gtest.h>

#include <errno.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "rkpriority.h"

static int s_uidQuestions;

// In place of the C library's: every routine that touches the scheduler asks this first.
extern "C" uid_t getuid() noexcept {
    ++s_uidQuestions;
    return static_cast<uid_t>(syscall(SYS_getuid));
}

namespace {

struct State {
    int nice, policy, priority;
    bool operator==(State const &other) const {
        return nice == other.nice && policy == other.policy && priority == other.priority;
    }
};

std::ostream &operator<<(std::ostream &out, State const &s) {
    return out << "nice " << s.nice << " policy " << s.policy << " priority " << s.priority;
}

State current() {
    sched_param param = {};
    sched_getparam(0, &param);
    return {getpriority(PRIO_PROCESS, 0), sched_getscheduler(0), param.sched_priority};
}

// What the kernel makes of the requests themselves: a confined root may be refused one of them.
State requested(int nice, int policy, int priority) {
    sched_param param = {};
    param.sched_priority = priority;
    setpriority(PRIO_PROCESS, 0, nice);
    sched_setscheduler(0, policy, &param);
    return current();
}

struct Outcome {
    State before, expected, during, after;
    bool flagDuring, flagAfter;
};

State expectedOf(int mode) {
    if (mode == 1) return requested(-20, SCHED_RR, sched_get_priority_max(SCHED_FIFO));
    if (mode == 2) return requested(0, SCHED_OTHER, 0);
    if (mode == 3) return requested(10, SCHED_OTHER, 0);
    return current();
}

Outcome setAndReset(int mode, State start) {
    Outcome o;
    o.expected = expectedOf(mode);
    o.before = requested(start.nice, start.policy, start.priority);
    rkSetPriority(mode);
    o.during = current();
    o.flagDuring = _bSavedPrio;
    rkResetPriority();
    o.after = current();
    o.flagAfter = _bSavedPrio;
    return o;
}

// Runs the step in a child process, so that no priority stays behind.
template <class Step>
Outcome inChild(Step step) {
    Outcome outcome = {};
    int ends[2];
    if (pipe(ends) != 0) ADD_FAILURE() << "no pipe";
    pid_t child = fork();
    if (child == 0) {
        outcome = step();
        ssize_t written = write(ends[1], &outcome, sizeof outcome);
        _exit(written == static_cast<ssize_t>(sizeof outcome) ? 0 : 1);
    }
    EXPECT_EQ(read(ends[0], &outcome, sizeof outcome), static_cast<ssize_t>(sizeof outcome));
    close(ends[0]);
    close(ends[1]);
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    return outcome;
}

bool isRoot() {
    return getuid() == 0;
}

const State ordinary = {5, SCHED_OTHER, 0};

void checkMode(int mode) {
    if (!isRoot()) GTEST_SKIP() << "only root can change the priority";
    Outcome o = inChild([mode] { return setAndReset(mode, ordinary); });
    EXPECT_EQ(o.during, o.expected);
    EXPECT_FALSE(o.during == o.before) << "the kernel lets root do nothing here";
    EXPECT_TRUE(o.flagDuring);
    EXPECT_EQ(o.after, o.before);
    EXPECT_FALSE(o.flagAfter);
}

} // namespace

TEST(RkPriority, HighIsNiceMinusTwentyAndTheMostRoundRobin) {
    checkMode(1);
}

TEST(RkPriority, NormalIsNiceZero) {
    checkMode(2);
}

TEST(RkPriority, LowIsNiceTen) {
    checkMode(3);
}

TEST(RkPriority, ResetBringsBackARealTimePolicy) {
    if (!isRoot()) GTEST_SKIP() << "only root can have one";
    Outcome o = inChild([] { return setAndReset(3, {-3, SCHED_FIFO, 7}); });
    EXPECT_EQ(o.during, o.expected);
    EXPECT_EQ(o.after, o.before);
}

TEST(RkPriority, NoneNeitherSavesNorChanges) {
    Outcome o = inChild([] {
        Outcome o = {};
        rkSetPriority(0);
        o.flagDuring = _bSavedPrio;
        // A reset that restored anything would undo this.
        setpriority(PRIO_PROCESS, 0, 15);
        o.before = current();
        rkResetPriority();
        o.after = current();
        return o;
    });
    EXPECT_FALSE(o.flagDuring);
    EXPECT_EQ(o.before.nice, 15);
    EXPECT_EQ(o.after, o.before);
}

TEST(RkPriority, NoneAsksTheSystemNothing) {
    s_uidQuestions = 0;
    rkSetPriority(4);
    rkResetPriority();
    ASSERT_EQ(s_uidQuestions, 2) << "one to save and one to restore";
    rkSetPriority(0);
    rkResetPriority();
    EXPECT_EQ(s_uidQuestions, 2);
}

TEST(RkPriority, NoneForgetsAnEarlierSet) {
    Outcome o = inChild([] {
        Outcome o = {};
        rkSetPriority(4);
        rkSetPriority(0);
        o.flagDuring = _bSavedPrio;
        setpriority(PRIO_PROCESS, 0, 15);
        rkResetPriority();
        o.after = current();
        return o;
    });
    EXPECT_FALSE(o.flagDuring);
    EXPECT_EQ(o.after.nice, 15);
}

TEST(RkPriority, UnknownModeSavesAndChangesNothing) {
    Outcome o = inChild([] { return setAndReset(4, ordinary); });
    EXPECT_EQ(o.during, o.before);
    EXPECT_TRUE(o.flagDuring);
    EXPECT_EQ(o.after, o.before);
    EXPECT_FALSE(o.flagAfter);
}

TEST(RkPriority, SecondSetLosesTheFirstSavedState) {
    if (!isRoot()) GTEST_SKIP() << "only root can change the priority";
    Outcome o = inChild([] {
        Outcome o = {};
        o.before = requested(5, SCHED_OTHER, 0);
        rkSetPriority(3);
        rkSetPriority(2);
        o.during = current();
        rkResetPriority();
        o.after = current();
        return o;
    });
    EXPECT_EQ(o.during.nice, 0);
    EXPECT_EQ(o.after.nice, 10);
}

TEST(RkPriority, SecondResetDoesNothing) {
    Outcome o = inChild([] {
        Outcome o = {};
        rkSetPriority(3);
        rkResetPriority();
        setpriority(PRIO_PROCESS, 0, 15);
        rkResetPriority();
        o.after = current();
        return o;
    });
    EXPECT_EQ(o.after.nice, 15);
}

TEST(RkPriority, OrdinaryUserKeepsWhatHeStartedWith) {
    Outcome o = inChild([] {
        Outcome o = {};
        if (getuid() == 0 && setuid(65534) != 0) return o;
        // An ordinary user may still make himself nicer, so a reset that ran would be seen.
        o.before = current();
        rkSetPriority(3);
        o.during = current();
        o.flagDuring = _bSavedPrio;
        setpriority(PRIO_PROCESS, 0, 17);
        o.expected = current();
        rkResetPriority();
        o.after = current();
        o.flagAfter = _bSavedPrio;
        return o;
    });
    EXPECT_TRUE(o.flagDuring);
    EXPECT_FALSE(o.flagAfter);
    EXPECT_EQ(o.during, o.before) << "even what he could do is not done";
    EXPECT_EQ(o.expected.nice, 17);
    EXPECT_EQ(o.after, o.expected);
}

TEST(RkPriority, OrdinaryUserAskingForHighSetsAndClearsTheFlagAlone) {
    Outcome o = inChild([] {
        Outcome o = {};
        if (getuid() == 0) {
            // A saved state that even an ordinary user could go back to.
            requested(18, SCHED_OTHER, 0);
            rkSetPriority(4);
            rkResetPriority();
            requested(ordinary.nice, SCHED_OTHER, 0);
            if (setuid(65534) != 0) return o;
        }
        o.before = current();
        rkSetPriority(1);
        o.flagDuring = _bSavedPrio;
        o.during = current();
        rkResetPriority();
        o.after = current();
        o.flagAfter = _bSavedPrio;
        return o;
    });
    EXPECT_TRUE(o.flagDuring);
    EXPECT_FALSE(o.flagAfter);
    EXPECT_EQ(o.during, o.before);
    EXPECT_EQ(o.after, o.before);
}
