// start_program.cpp - the harness with 400 tests more; notes the time of its first measurement and ends.

#include <stdio.h>
#include <time.h>
#include <unistd.h>

#include <string>

#include "kernels.h"
#include "km.h"
#include "kmmeasure.h"
#include "rk.h"

static std::string s_dir;

// The frequency is known from the beginning, so that its measurement is left out.
static const int s_frequency = rkCpuTicker::m_freqMHz = 1000;

static void noteFirstMeasurement() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    FILE *file = fopen((s_dir + "/first").c_str(), "w");
    if (!file) _exit(1);
    fprintf(file, "%lld.%09ld\n", static_cast<long long>(time.tv_sec), time.tv_nsec);
    fclose(file);
    _exit(0);
}

static rkResult firstLoop(int, long long *) {
    noteFirstMeasurement();
    return rkResError;
}

class StartTest : public kmTest {
public:
    explicit StartTest(std::string const &name)
        : kmTest(firstLoop, nullptr, name.c_str(), __FILE__, "StartTest//KM_REG") {}
};

// ---- 400 tests ------------------------------------------------------------------

static char const *const bases[] = {"SAD", "SqrDiff", "VarMean",   "MeanAbsDev",         "SubSAD",
                                    "MC",  "Quant",   "DCT8x8Inv", "Deblocking_HorEdge", "EdgesDetect"};
static char const *const blocks[] = {"4x4", "8x8", "16x8", "8x16", "16x16"};
static char const *const endings[] = {"_8u32s",     "_8u32s_C1R", "_16s_C1",    "_16s32s_C1R",
                                      "_8u16s_C1R", "_8u_C1IR",   "_16u32s_C1", "_32f_C1R"};

// In an order far from the sorted one.
static int registerTests() {
    const int count = 10 * 5 * 8;
    for (int i = 0; i < count; ++i) {
        int n = i * 157 % count;
        rkRegTest(new StartTest(std::string("keli") + bases[n % 10] + blocks[n / 10 % 5] + endings[n / 50]));
    }
    return count;
}

static const int s_registered = registerTests();

int main(int argc, char **argv) {
    if (argc < 2) return 2;
    s_dir = argv[1];
    std::string table = "-l" + s_dir;
    char *keys[] = {argv[0],
                    const_cast<char *>("-B"),
                    const_cast<char *>("-LPERF"),
                    const_cast<char *>("-r"),
                    const_cast<char *>("-tStartTest"),
                    const_cast<char *>(table.c_str()),
                    nullptr};
    if (!pSession) pSession = new rkSession;
    pSession->run(6, keys);
    return 1; // no test measured
}
