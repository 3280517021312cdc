// faulty.cpp - a test file whose primitives fail in every way there is, round after round, sound ones between
// them.

#include <stdlib.h>
#include <string.h>

#include "../unit/faults.h"
#include "rk.h"

// ---- ways to fail ---------------------------------------------------------------------------

static void throwMessage() {
    throw rkException(rkString("no such block"));
}

static void throwLiteral() {
    throw rkException("no such table");
}

struct Fault {
    char const *name;
    void (*make)();
};

static const Fault faults[] = {{"wild", writeWild},        {"deep", overflowStack}, {"illegal", illegal},
                               {"integer", divideInteger}, {"x87", divideX87},      {"message", throwMessage},
                               {"literal", throwLiteral}};

static char const *const places[] = {"canStart", "initData", "call"};

// ---- the test -------------------------------------------------------------------------------

static rkStepIterator<int> s_set;
static void (*s_fault)();                // of the third set's calls; null for a sound test
static rkResult s_status = rkResSuccess; // of the third set's calls

static bool isThird() {
    return s_set.value() == 3;
}

static rkResult loop(int n, long long *clocks) {
    if (s_fault && isThird()) s_fault();
    *clocks = 100LL * n;
    return isThird() ? s_status : rkResSuccess;
}

class Faulty : public rkTest {
public:
    // place: where the fault is made; status: what the calls of the third set return.
    Faulty(rkString name, void (*fault)(), rkString place, rkResult status, int sets)
        : rkTest(loop, rkFuncStat(nullptr), name, "faulty.cpp", "Faulty//"),
          m_fault(fault),
          m_place(place),
          m_status(status),
          m_sets(sets) {}

    bool canStart() override {
        s_set.init("set", 1, m_sets, 1, StepPlus);
        m_parms.push_back(&s_set);
        s_fault = m_place == "call" ? m_fault : nullptr;
        s_status = m_status;
        if (m_place == "canStart") m_fault();
        return true;
    }
    bool initData() override {
        m_data = allocate(1000, 0);
        memset(m_data, s_set.value(), 1000);
        if (m_place == "initData" && isThird()) m_fault();
        return true;
    }
    void flushData() override { deallocate(m_data); }

private:
    void (*m_fault)();
    rkString m_place;
    rkResult m_status;
    int m_sets;
    void *m_data = nullptr;
};

// ---- registration ---------------------------------------------------------------------------

static int setting(char const *name, int otherwise) {
    char const *text = getenv(name);
    return text ? atoi(text) : otherwise;
}

// The names sort as the tests are registered.
static void add(rkString kind, void (*fault)(), rkString place, rkResult status, int sets) {
    static int s_count = 0;
    char number[16];
    snprintf(number, sizeof number, "t%05d_", ++s_count);
    rkRegTest(new Faulty(rkString(number) + kind, fault, place, status, sets));
}

static void addSound() {
    add("sound", nullptr, "", rkResSuccess, 4);
}

static void addRound() {
    for (Fault const &fault : faults) {
        for (char const *place : places) {
            add(rkString(fault.name) + "_" + place, fault.make, place, rkResSuccess, 4);
            addSound();
        }
    }
    add("error", nullptr, "", rkResLibError, 4);
    addSound();
    add("warning", nullptr, "", rkResLibWarning, 4);
    addSound();
}

static int registerAll() {
    rkRegQKeys();
    rkCpuTicker::m_freqMHz = 1000; // nothing here is about time
    int rounds = setting("FAULTY_ROUNDS", 1), sets = setting("FAULTY_SETS", 0);
    if (sets > 0) add("long", nullptr, "", rkResSuccess, sets);
    for (int i = 0; i < rounds; ++i) addRound();
    return 1;
}

static int s_registered = registerAll();
