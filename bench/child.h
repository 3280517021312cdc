// child.h - runs a program to its end.

#ifndef RAKOVA_BENCH_CHILD_H
#define RAKOVA_BENCH_CHILD_H

#include <sys/resource.h>

#include <string>
#include <vector>

struct ChildOutcome {
    bool ok;      // it ran, and its exit status was 0
    rusage usage; // ru_maxrss: peak of its resident memory in KiB, at least that of the caller
};

// Standard input is empty, standard output goes to the file output.
ChildOutcome runChild(std::vector<std::string> const &args, std::string const &output);

#endif
