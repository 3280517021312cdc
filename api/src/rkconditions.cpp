// rkconditions.cpp - the conditions of -f and -t.

#include "rkconditions.h"

#include "rktest.h"

static bool contains(rkString const &text, rkString const &pattern) {
    return text.find(pattern, 0) != rkString::npos;
}

bool RunCondition_f::tobeRun(rkTest const *test) {
    return contains(test->m_name, m_pattern);
}
bool RunCondition_fEqual::tobeRun(rkTest const *test) {
    return test->m_name == m_pattern;
}
bool RunCondition_fAnd::tobeRun(rkTest const *test) {
    return contains(test->m_name, m_pattern);
}
bool RunCondition_fNot::tobeRun(rkTest const *test) {
    return !contains(test->m_name, m_pattern);
}
bool RunCondition_t::tobeRun(rkTest const *test) {
    return contains(test->m_info.m_name, m_pattern);
}
bool RunCondition_tEqual::tobeRun(rkTest const *test) {
    return test->m_info.m_name == m_pattern;
}
bool RunCondition_tAnd::tobeRun(rkTest const *test) {
    return contains(test->m_info.m_name, m_pattern);
}
bool RunCondition_tNot::tobeRun(rkTest const *test) {
    return !contains(test->m_info.m_name, m_pattern);
}

bool rkConditions::tobeRun(rkTest const *test) {
    bool anyAdditive = false, selected = false;
    for (iterator i = begin(); i != end() && !selected; ++i) {
        if (!(*i)->m_additive) continue;
        anyAdditive = true;
        selected = (*i)->tobeRun(test);
    }
    if (anyAdditive && !selected) return false;
    for (iterator i = begin(); i != end(); ++i) {
        if (!(*i)->m_additive && !(*i)->tobeRun(test)) return false;
    }
    return true;
}
