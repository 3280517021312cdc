// rkpriority.cpp - scheduling priority of the process around a measured stretch.

#include "rkpriority.h"

#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

bool _bSavedPrio = false;

static int s_savedNice;
static int s_savedPolicy;
static sched_param s_savedParam;

static bool isRoot() {
    return getuid() == 0;
}

static void _savePriority() {
    if (!isRoot()) return;
    s_savedNice = getpriority(PRIO_PROCESS, 0);
    s_savedPolicy = sched_getscheduler(0);
    sched_getparam(0, &s_savedParam);
}

static void _resetPriority() {
    if (!isRoot()) return;
    setpriority(PRIO_PROCESS, 0, s_savedNice);
    sched_setscheduler(0, s_savedPolicy, &s_savedParam);
}

// The maximum asked is that of the other real-time policy, on purpose.
static void _setHighPriority() {
    if (!isRoot()) return;
    setpriority(PRIO_PROCESS, 0, -20);
    sched_param param = {};
    param.sched_priority = sched_get_priority_max(SCHED_FIFO);
    if (param.sched_priority == -1) return;
    sched_setscheduler(0, SCHED_RR, &param);
}

static void setOrdinary(int nice) {
    setpriority(PRIO_PROCESS, 0, nice);
    sched_param param = {};
    sched_setscheduler(0, SCHED_OTHER, &param);
}

static void _setNormalPriority() {
    if (isRoot()) setOrdinary(0);
}

static void _setLowPriority() {
    if (isRoot()) setOrdinary(10);
}

void rkSetPriority(int mode) {
    _bSavedPrio = mode != 0;
    if (!_bSavedPrio) return;
    _savePriority();
    if (mode == 1) {
        _setHighPriority();
    } else if (mode == 2) {
        _setNormalPriority();
    } else if (mode == 3) {
        _setLowPriority();
    }
}

void rkResetPriority() {
    if (!_bSavedPrio) return;
    _bSavedPrio = false;
    _resetPriority();
}
