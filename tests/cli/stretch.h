// stretch.h - judges the instructions between the two reads of the counter that measure a call.

#ifndef RAKOVA_TESTS_STRETCH_H
#define RAKOVA_TESTS_STRETCH_H

#include <string>
#include <vector>

enum class Stretch { Loop, Single }; // counted calls in one interval, or one call an interval

// The instructions between the two reads around the call of function, out of all instructions of a measuring
// function, as objdump writes them without addresses. Empty if there is not exactly one such stretch.
std::vector<std::string> measuredStretch(std::vector<std::string> const &instructions,
                                         std::string const &function);

// The first instruction of the stretch that has no business there, or "". These have:
//  - one call, of function
//  - in front of it, loads and register moves that fetch arguments, one shift and one or that put the first
//    reading together, and padding
//  - behind it, one move of the status out of the way of the second reading
//  - in a Loop, one test of the count in front of the first pass, and one decrement and one jump back behind
//    the call
std::string intruder(std::vector<std::string> const &stretch, std::string const &function, Stretch kind);

#endif
