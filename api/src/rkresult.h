// rkresult.h - the result of a measurement or a test.

#ifndef RAKOVA_RKRESULT_H
#define RAKOVA_RKRESULT_H

// Results combine by taking the greater value. 2 to 6 are warnings, 7 and above errors.
enum rkResult {
    rkResNotRun = 0,
    rkResSuccess = 1,
    rkResAccuracyWarning = 2,   // accuracy target not reached
    rkResCtrlStatusWarning = 3, // floating-point status changed during the call
    rkResDataWarning = 4,       // duplicate table line, or a test's own warning
    rkResLibWarning = 5,        // the primitive returned a positive status
    rkResWarning = 6,           // summary class of 2 to 5
    rkResAccuracyError = 7,     // too few clocks could be measured
    rkResDataError = 8,         // data could not be prepared
    rkResLibError = 9,          // the primitive returned a negative status
    rkResException = 10,        // an exception or signal stopped the test
    rkResError = 11             // internal problem, and summary class of 7 to 10
};

char const *rkResultString(rkResult result); // in words, for the console
char const *rkResultName(rkResult result);   // in capitals, for reports

inline bool rkIsError(rkResult r) {
    return r >= rkResAccuracyError;
}
inline bool rkIsWarning(rkResult r) {
    return r >= rkResAccuracyWarning && r <= rkResWarning;
}

#endif
