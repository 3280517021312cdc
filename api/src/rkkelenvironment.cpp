// rkkelenvironment.cpp - the seven core functions of the library, bound or replaced.

#include "rkcpu.h"
#include "rkplaintypes.h"
#include "rkregister.h"
#include "rksession.h"

int (*kel_GetCpuType)() = nullptr;
int (*kel_GetNumCoresOnDie)() = nullptr;
int (*kel_GetMaxCacheSizeB)(int *size) = nullptr;
char const *(*kel_GetStatusString)(int status) = nullptr;
int (*kel_Init)() = nullptr;
int (*kel_InitCpu)(int code) = nullptr;
int (*kel_SetNumThreads)(int n) = nullptr;

static char const *s_kelGetStatusString(int status) {
    if (status < 0) return "Error";
    return status > 0 ? "Warning" : "OK";
}

static const int noLibrary = -2;
static int s_kelInit() {
    return noLibrary;
}
static int s_kelInitCpu(int) {
    return noLibrary;
}
static int s_kelSetNumThreads(int) {
    return noLibrary;
}

template <class Func>
static void fill(Func &func, Func fallback) {
    if (!func) func = fallback;
}

void setKelEnvironment() {
    if (kelEnvironment) {
        kelEnvironment();
        g_ostrm << MsgError << "\nKEL Core library functions have been integrated into RK\n" << EndMessage;
    }
    fill(kel_GetCpuType, rk_kelGetCpuType);
    fill(kel_GetNumCoresOnDie, rk_kelGetNumCoresOnDie);
    fill(kel_GetMaxCacheSizeB, rk_kelGetMaxCacheSizeB);
    fill(kel_GetStatusString, s_kelGetStatusString);
    fill(kel_Init, s_kelInit);
    fill(kel_InitCpu, s_kelInitCpu);
    fill(kel_SetNumThreads, s_kelSetNumThreads);
}

static void reportStatus(int status) {
    if (status == 0) {
        g_ostrm << "--status = kelStsNoErr\n";
        return;
    }
    g_ostrm << (status < 0 ? "--KEL ERROR. " : "--KEL WARNING. ");
    g_ostrm << "status = " << status << ": " << kel_GetStatusString(status) << "\n";
}

static void initAskedCpu() {
    g_ostrm << "\n--calling kelInitCpu( kelCpu" << rkCpuType::cpuLabel(s_cpuType) << "=" << s_cpuType
            << " )\n";
    int status = kel_InitCpu(s_cpuType);
    reportStatus(status);
    if (status >= 0) return;
    g_ostrm << "--calling kelInit()\n";
    status = kel_Init();
    if (status < 0) reportStatus(status);
}

void initStaticCpu() {
    if (!kelEnvironment) return;
    if (s_cpuType == -1) {
        kel_Init();
        return;
    }
    g_ostrm << MsgError;
    initAskedCpu();
    g_ostrm << EndMessage;
}

void setNumThreads() {
    if (!kelEnvironment || s_numThreads < 1) return;
    g_ostrm << MsgError << "\n--calling kelSetNumThreads( " << s_numThreads << " )\n";
    reportStatus(kel_SetNumThreads(s_numThreads));
    g_ostrm << EndMessage;
}

void setKelLibInfo() {
    if (!kelVersionList) return;
    for (KelLibraryVersion const *(*getVersion)() : *kelVersionList) {
        // A build of the library may lack the function, or have nothing to say.
        KelLibraryVersion const *version = getVersion ? getVersion() : nullptr;
        if (!version) continue;
        rkString text(version->Name);
        text << ", " << rkString(version->Version) << ", " << rkString(version->BuildDate);
        rkRegLibInfo(text);
    }
    g_ostrm << "KEL libraries information has been set into RK\n";
}
