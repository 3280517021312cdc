// main.cpp - the program.

#include "rk.h"

int main(int argc, char **argv) {
    g_trace.traceIn("main");
    if (!pSession) pSession = new rkSession;
    int status = pSession->run(argc, argv);
    rkFreeAll();
    g_trace.traceOut("main");
    return status;
}
