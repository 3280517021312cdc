// rkregister.h - how test files make themselves known: functions for static initialisers, run before main.

#ifndef RAKOVA_RKREGISTER_H
#define RAKOVA_RKREGISTER_H

#include "rkparameter.h"
#include "rktestlist.h"

struct KelLibraryVersion;
class rkSession;

// All return 1, so that they can initialise a static variable, and none needs another static object.
int rkRegTest(rkTest *test);          // the list owns the test
int rkRegParm(rkParameter &parm);     // a common parameter, asked for once
int rkRegParmFunc(void (*func)());    // called once before common parameters are read
int rkRegCmdLine(rkString line);      // keys for a start without any
int rkRegSession(rkSession *session); // in place of the default one
int rkRegKelVersion(KelLibraryVersion const *(*func)());
int rkRegKelEnvironment(void (*hook)());       // binds the library's core functions
int rkRegTimingMethod(void (*func)(rkTool &)); // presets the questions about the timing method
int rkRegHotFunction(rkString name);
int rkRegQKeys();
int rkRegMissing(rkString name); // a function that this build of the library lacks; its test is left out

extern rkSession *pSession;
extern rkList<rkParameter *> *g_pParmList;
extern rkList<rkString> *g_pHotList;
extern rkList<rkString> *g_pMissingList;
extern rkString *pCmdLine;
extern void (*s_parmFunc)();
extern void (*kelEnvironment)();
extern rkList<KelLibraryVersion const *(*)()> *kelVersionList;
extern void (*initTimingMethod)(rkTool &);
extern bool qKeys;

// The entry points of the library's core, or our own where there is none.
extern int (*kel_GetCpuType)();
extern int (*kel_GetNumCoresOnDie)();
extern int (*kel_GetMaxCacheSizeB)(int *size);
extern char const *(*kel_GetStatusString)(int status);
extern int (*kel_Init)();
extern int (*kel_InitCpu)(int code);
extern int (*kel_SetNumThreads)(int n);

#endif
