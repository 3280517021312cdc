// dvdecode.cpp - decoding of compressed video segments of DV.

#include "dvsegments.h"
#include "dvtables.h"
#include "dvtest.h"

// ---- parameters ---------------------------------------------------------------

static rkStepIterator<int> tableNumber; // of the segment

// ---- data ---------------------------------------------------------------------

static const int segmentBlocks = 30; // six of each of five macroblocks

static kmVector pSrc; // made for the memory report: the segments themselves are constants
static kmVector pDstBlocks, BlParamBuffer;
static Kel8u const *pHaffmanTableSrc; // the segment in hand
static Kel32u *m_pHuffTable;

static Kel8u const *const segments[] = {white_noise_table, nature_table};
static const int segmentCount = 2;

// The zigzag scan, and that of 2-4-8 blocks: rows 0 to 3 are sums of the fields, 4 to 7 their differences.
// clang-format off
static const Kel32u _INTERNAL_DEZIGZAG_TABLE_0[2 * dvBlockLength] = {
     0,  1,  8, 16,  9,  2,  3, 10, 17, 24, 32, 25, 18, 11,  4,  5,
    12, 19, 26, 33, 40, 48, 41, 34, 27, 20, 13,  6,  7, 14, 21, 28,
    35, 42, 49, 56, 57, 50, 43, 36, 29, 22, 15, 23, 30, 37, 44, 51,
    58, 59, 52, 45, 38, 31, 39, 46, 53, 60, 61, 54, 47, 55, 62, 63,

     0, 32,  1, 33,  8, 40,  2, 34,  9, 41, 16, 48, 24, 56, 17, 49,
    10, 42,  3, 35,  4, 36, 11, 43, 18, 50, 25, 57, 26, 58, 19, 51,
    12, 44,  5, 37,  6, 38, 13, 45, 20, 52, 27, 59, 28, 60, 21, 53,
    14, 46,  7, 39, 15, 47, 22, 54, 29, 61, 30, 62, 23, 55, 31, 63};
// clang-format on

// ---- class --------------------------------------------------------------------

class rk_DvHuffmanDecode : public rkDvTest {
public:
    using rkDvTest::rkDvTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;

private:
    bool createVectors();
    bool createTable();
};

bool rk_DvHuffmanDecode::canStart() {
    m_parms.push_back(&tableNumber);
    rkDvTest::canStart();
    tableNumber.init("tableNumber", 0, segmentCount - 1, 1, StepPlus);
    return true;
}

bool rk_DvHuffmanDecode::createVectors() {
    pSrc.init(m_func, kmSrc);
    pDstBlocks.init(16 | kmTypeSigned);
    BlParamBuffer.init(32);
    return pSrc.createVectorExt(dvSegmentSize, 16, SetDefault, 0, 0) &&
           pDstBlocks.createVectorExt(segmentBlocks * dvBlockLength, 16, SetDefault, 0, 0) &&
           BlParamBuffer.createVectorExt(segmentBlocks, 16, SetDefault, 0, 0);
}

bool rk_DvHuffmanDecode::createTable() {
    if (!keliInitAllocHuffmanTable_DV_32u) return false;
    return !rkIsError(checkStatus(keliInitAllocHuffmanTable_DV_32u(dvTable1, dvTable2, &m_pHuffTable)));
}

bool rk_DvHuffmanDecode::initData() {
    if (!createVectors() || !createTable()) return false;
    pDstBlocks.setConst(0, 0);
    BlParamBuffer.setConst(0, 0);
    pSrc.setRandom(0, 255);
    const int number = tableNumber.value(); // a user may ask for any
    pHaffmanTableSrc = number >= 0 && number < segmentCount ? segments[number] : nullptr;
    return pHaffmanTableSrc != nullptr;
}

void rk_DvHuffmanDecode::flushData() {
    pSrc.deleteVector();
    pDstBlocks.deleteVector();
    BlParamBuffer.deleteVector();
    pHaffmanTableSrc = nullptr;
    if (m_pHuffTable && keliFreeHuffmanTable_DV_32u) keliFreeHuffmanTable_DV_32u(m_pHuffTable);
    m_pHuffTable = nullptr;
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(rk_DvHuffmanDecode, keliHuffmanDecodeSegment_DV_8u16s,
       pHaffmanTableSrc, _INTERNAL_DEZIGZAG_TABLE_0, m_pHuffTable, pDstBlocks.p16s, BlParamBuffer.p32u);
// clang-format on
