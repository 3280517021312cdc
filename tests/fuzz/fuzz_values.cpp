// fuzz_values.cpp - texts in the language of values, given to parameters of each kind one after the other.
// Input: a line with the letter of the kind, then a text a line, all for the same parameter.

#include <algorithm>
#include <type_traits>

#include "fuzz.h"
#include "rkmapdefault.h"
#include "rkmapiterator.h"
#include "rkstepiterator.h"

namespace {

const int walkBound = 500;

template <class T>
std::string shown(T value) {
    return str(rkValueToString(value));
}

// ---- families ---------------------------------------------------------------------

// All that the user can tell of a family: its texts and its stored fields.
template <class T>
std::string familyOf(rkDefault_NSC<T> const &parm) {
    return str(parm.defaultString()) + "/" + str(parm.description()) + "/" + str(parm.valueString());
}

template <class T>
std::string familyOf(rkIterator_NSC<T> const &parm) {
    std::string family = str(parm.description()) + "/";
    for (T value : static_cast<rkList<T> const &>(parm)) family += shown(value) + ";";
    return family;
}

template <class T>
std::string familyOf(rkStepIterator<T> const &parm) {
    std::string family = str(parm.description());
    if (parm.m_oprtn == StepList) return family + "/" + familyOf(static_cast<rkIterator<T> const &>(parm));
    return family + (parm.m_descending ? " down" : " up");
}

// ---- walks ------------------------------------------------------------------------

template <class T>
void checkWalk(rkDefault_NSC<T> &parm, std::string const &text) {
    require(parm.firstValue() && !parm.nextValue(), "a plain value comes once", text);
}

template <class T>
void checkWalk(rkIterator_NSC<T> &parm, std::string const &text) {
    bool ok = parm.firstValue();
    for (T value : static_cast<rkList<T> const &>(parm)) {
        require(ok && shown(parm.value()) == shown(value), "the list is walked in order", text);
        ok = parm.nextValue();
    }
    require(!ok, "the walk ends with the list", text);
}

// A double holds every value of every type exactly, and tells a product that is beyond the limit.
template <class T>
void checkSteps(rkStepIterator<T> &parm, std::string const &text) {
    double value = parm.m_first, last = parm.m_last, step = parm.m_step;
    bool down = parm.m_first > parm.m_last;
    require(down == parm.m_descending, "a walk goes from first to last", text);
    bool ok = parm.firstValue();
    for (int i = 0; i < walkBound && (down ? value >= last : value <= last); ++i, ok = parm.nextValue()) {
        require(ok && parm.value() == value, "each step is taken", text);
        if (parm.m_oprtn == StepTimes) value *= step;
        if (parm.m_oprtn == StepPlus) value += step;
        if (parm.m_oprtn == StepMinus) value -= step;
    }
    if (down ? value < last : value > last) require(!ok, "the walk ends behind its limit", text);
}

template <class T>
void checkWalk(rkStepIterator<T> &parm, std::string const &text) {
    if (parm.m_oprtn == StepList) return checkWalk(static_cast<rkIterator_NSC<T> &>(parm), text);
    checkSteps(parm, text);
}

// ---- the default as an answer -------------------------------------------------------

template <class T>
bool readsAsSteps(rkDefault_NSC<T> const &) {
    return false;
}

// A list of three whose last is negative is written like steps down, and is read as such.
template <class T>
bool readsAsSteps(rkStepIterator<T> const &parm) {
    return parm.m_oprtn == StepList && parm.size() == 3 && std::is_signed_v<T> && *--parm.end() < 0;
}

template <class Parm>
void checkDefault(Parm &parm, std::string const &text) {
    if (readsAsSteps(parm)) return;
    std::string family = familyOf(parm);
    try {
        parm.translate(parm.defaultString());
    } catch (rkException &e) {
        require(false, "the default is a good answer", text + ": " + e.info());
    }
    require(familyOf(parm) == family, "the default as an answer changes nothing", text);
}

// ---- one parameter --------------------------------------------------------------------

template <class Parm>
void answer(Parm &parm, std::string const &text) {
    std::string before = familyOf(parm);
    try {
        parm.translate(rk(text));
    } catch (rkException &e) {
        require(e.msg()[0] != '\0', "a refusal says why", text);
        require(familyOf(parm) == before, "a bad text leaves the old family", text);
        return;
    }
    checkWalk(parm, text);
    checkDefault(parm, text);
    checkWalk(parm, text);
}

template <class Parm>
void answerAll(Parm &parm, FuzzInput &input) {
    for (std::string const &text : input.lines()) answer(parm, text);
}

template <class T>
void answerList(FuzzInput &input) {
    rkIterator<T> parm;
    parm.init("size");
    answerAll(parm, input);
}

template <class T>
void answerSteps(FuzzInput &input) {
    rkStepIterator<T> parm;
    parm.init("size", 1, 31, 2, StepPlus);
    answerAll(parm, input);
}

template <class T>
void answerDefault(FuzzInput &input) {
    rkDefault<T> parm(T(), "size");
    answerAll(parm, input);
}

void answerMap(FuzzInput &input) {
    rkMapIterator<int> parm;
    parm.init("mode");
    parm[3] = "fast";
    parm[5] = "full";
    parm[-1] = "-";
    parm[0] = "round";
    parm.add(3);
    answerAll(parm, input);
}

template <class T>
void answerMapDefault(FuzzInput &input) {
    rkMapDefault<T> parm(T(), "mode");
    parm[T(0)] = "Off";
    parm[T(1)] = "Statistic";
    answerAll(parm, input);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    static const struct {
        char letter;
        void (*answer)(FuzzInput &);
    } kinds[] = {
        {'i', answerList<int>},        {'y', answerList<unsigned char>}, {'z', answerList<KeliSize>},
        {'s', answerSteps<int>},       {'u', answerSteps<unsigned>},     {'c', answerSteps<signed char>},
        {'d', answerDefault<int>},     {'b', answerDefault<bool>},       {'k', answerDefault<KeliSize>},
        {'n', answerMapDefault<int>},  {'o', answerMapDefault<bool>},    {'m', answerMap},
        {'l', answerDefault<unsigned>}};
    FuzzInput input(data, size);
    std::string kind = input.line();
    for (auto const &entry : kinds) {
        if (kind == std::string(1, entry.letter)) entry.answer(input);
    }
    return 0;
}
