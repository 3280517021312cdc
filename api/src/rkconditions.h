// rkconditions.h - which tests the keys -f and -t select.

#ifndef RAKOVA_RKCONDITIONS_H
#define RAKOVA_RKCONDITIONS_H

#include "rklist.h"
#include "rkstring.h"

class rkTest;

class RunCondition {
public:
    RunCondition(bool additive, rkString pattern) : m_additive(additive), m_pattern(pattern) {}
    virtual ~RunCondition() = default;
    virtual bool tobeRun(rkTest const *test) = 0;

    bool m_additive; // it can select a test; the others only take away
    rkString m_pattern;
};

// By the function's name (-f) or by the test's class (-t).
class RunCondition_f : public RunCondition {
public:
    explicit RunCondition_f(rkString pattern) : RunCondition(true, pattern) {}
    bool tobeRun(rkTest const *test) override;
};
class RunCondition_fEqual : public RunCondition {
public:
    explicit RunCondition_fEqual(rkString pattern) : RunCondition(true, pattern) {}
    bool tobeRun(rkTest const *test) override;
};
class RunCondition_fAnd : public RunCondition {
public:
    explicit RunCondition_fAnd(rkString pattern) : RunCondition(false, pattern) {}
    bool tobeRun(rkTest const *test) override;
};
class RunCondition_fNot : public RunCondition {
public:
    explicit RunCondition_fNot(rkString pattern) : RunCondition(false, pattern) {}
    bool tobeRun(rkTest const *test) override;
};
class RunCondition_t : public RunCondition {
public:
    explicit RunCondition_t(rkString pattern) : RunCondition(true, pattern) {}
    bool tobeRun(rkTest const *test) override;
};
class RunCondition_tEqual : public RunCondition {
public:
    explicit RunCondition_tEqual(rkString pattern) : RunCondition(true, pattern) {}
    bool tobeRun(rkTest const *test) override;
};
class RunCondition_tAnd : public RunCondition {
public:
    explicit RunCondition_tAnd(rkString pattern) : RunCondition(false, pattern) {}
    bool tobeRun(rkTest const *test) override;
};
class RunCondition_tNot : public RunCondition {
public:
    explicit RunCondition_tNot(rkString pattern) : RunCondition(false, pattern) {}
    bool tobeRun(rkTest const *test) override;
};

// In the order of the command line, which does not matter: any additive condition selects a test (with none
// of them all tests are selected), and then each of the others can take it away. The conditions live to the
// end.
class rkConditions : public rkList<RunCondition *> {
public:
    bool tobeRun(rkTest const *test);
};

#endif
