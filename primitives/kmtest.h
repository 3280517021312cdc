// kmtest.h - the test of a library primitive: its parsed name, the library's status, the debug view of its
// data.

#ifndef RAKOVA_KMTEST_H
#define RAKOVA_KMTEST_H

#include "rktest.h"

#include "kmimage.h"

class kmTest : public rkTest {
public:
    using rkTest::rkTest;

    bool tobeRun(rkConditions &conditions) override;
    rkResult run() override;                             // every test starts at the same random seed
    int compareFunc(rkTest const *other) const override; // by the grammar of names
    void funcToCstrm() override;
    bool isFloatFunction() override;
    int printAllMemoryBlocks(rkString title) override; // number of blocks; only at output level MsgData
    rkString regInfo() override;

    virtual void printFirstDebugLine(rkString title);
    virtual void printLastDebugLine(rkString title);
    virtual void printFirstBlockLine(int n, rkObject *object, int size);
    virtual void printLastBlockLine(int n, rkObject *object);
    virtual void printVectorBlock(kmVector *vector);
    virtual void printByteBlock(void *block, int size);

    // Judges the status of a call: says what is wrong and raises the result of the test, which never gets
    // better. Not for use between two reads of the clock. Below output level MsgWarning a warning leaves the
    // test's result, but is still the answer.
    static rkResult checkStatus(KelStatus status, rkString const &name);
    rkResult checkStatus(KelStatus status) { return checkStatus(status, m_func); }

    using rkTest::regCacheParm;
    // Appends the parameter, or in a -C run a cache iterator around it: by the size of the image, or by that
    // of all blocks.
    void regCacheParm(rkIterator<KeliSize> &iter, kmImage &image, rkCacheIterator::SetNewValue set);
    void regCacheParm(rkIterator<KeliSize> &iter, rkCacheIterator::SetNewValue set);

    kmFunc m_func{m_name}; // the name of the function

    static bool m_checkErrorsOnly; // warnings of the library pass

private:
    void regCacheParm(rkIterator<KeliSize> &iter, kmImage *image, rkCacheIterator::SetNewValue set);
    void printBlock(int n, void *block, rkObject *owner, int size);
};

// What the suites of video coding share.
class kmvcTest : public kmTest {
public:
    using kmTest::kmTest;

    // The n-th group of width and height in the function's name: keliSAD16x8_8u32s. The sizes 2, 4, 8 and 16
    // count. False, and size as it was, if there is none.
    bool getBlockSize(KeliSize &size, int n);
    // Draws elements 0 to n - 1 from low to high but 0, by rand(): the vectors' seed stays. With no value but
    // 0 to draw it does not end.
    void setRandNonZero(kmVector &v, int n, int low, int high);
};

#endif
