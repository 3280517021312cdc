// huffman.h - making tables for decoding variable-length codes. Nothing registers these tests: a test file
// that wants them includes this header and does so itself.
//
//     KM_REG_I(CHuffman, keliHuffmanTableInitAlloc_32s, CHuffman::freeTable(),
//              CHuffman::pSrcTbl, &CHuffman::pDecodeTable);
//     KM_REG_I(CDVHuffman, keliInitAllocHuffmanTable_DV_32u, CDVHuffman::freeTable(),
//              dvTable1, dvTable2, &CDVHuffman::pDecodeTable);
//
// A call makes a table, so that the one before must be freed.

#ifndef RAKOVA_HUFFMAN_H
#define RAKOVA_HUFFMAN_H

#include "dvtables.h"
#include "kmvc.h"
#include "mpeg2tables.h"

// Runs every selected table of a class in each repeat.
class CHuffmanTables : public CPerfTest {
public:
    using CPerfTest::CPerfTest;

    static const int nameLength = 50;
    static const int maxTables = 6;

    // What a class has; the arrays are static.
    struct Tables {
        char const *section;             // of the ini file
        char const (*names)[nameLength]; // as key "Table" has them
        int const *const *tables;
        int const *divisors; // numbers of codes
        int count;
    };
    virtual Tables tables() const = 0;

    bool canStart() override;
    bool canContinue() override;
    void flushData() override;
    double getDivisor() override;
    rkString getUnit() override { return "codes"; }
    void parmsToCstrm() override;

    rkString allNames() const;  // the default of key "Table"
    void select(rkString list); // names that are none of the class's are passed over; the first for none
    static void freeTable();

    static int const *pSrcTbl; // the table in hand
    static Kel32s *pDecodeTable;

    bool m_selected[maxTables] = {};
    int m_index = 0; // of the table in hand

private:
    int nextSelected() const;
};

// Tables of values.
class CHuffman : public CHuffmanTables {
public:
    using CHuffmanTables::CHuffmanTables;

    Tables tables() const override;

    static int const *const pSrcTable[6];
    static char const NameTable[6][nameLength];
    static int const g_iDivisions[6];
};

// Tables of runs and levels.
class CHuffman_RL : public CHuffmanTables {
public:
    using CHuffmanTables::CHuffmanTables;

    Tables tables() const override;

    static int const *const pSrcTable[3];
    static char const NameTable[3][nameLength];
    static int const g_iDivisions[3];
};

// The table of DV.
class CDVHuffman : public CPerfTest {
public:
    using CPerfTest::CPerfTest;

    bool canStart() override;
    bool canContinue() override;
    void flushData() override;
    double getDivisor() override; // the number of codes
    rkString getUnit() override { return "codes"; }

    static void freeTable();

    static Kel32u *pDecodeTable;
};

#endif
