// huffman.cpp - making tables for decoding variable-length codes.

#include <string.h>

#include "huffman.h"

// ---- data ---------------------------------------------------------------------

int const *CHuffmanTables::pSrcTbl;
Kel32s *CHuffmanTables::pDecodeTable;

int const *const CHuffman::pSrcTable[6] = {MBAdressing, MotionVector, IMBType, PMBType, BMBType, MBPattern};
char const CHuffman::NameTable[6][nameLength] = {"MBAdressing", "MotionVector", "IMBType",
                                                 "PMBType",     "BMBType",      "MBPattern"};
// Fixed, so that results stay comparable: BMBType has 11 codes.
int const CHuffman::g_iDivisions[6] = {34, 33, 2, 7, 15, 64};

int const *const CHuffman_RL::pSrcTable[3] = {dct_coeff_first_RL, dct_coeff_next_RL, Table15};
char const CHuffman_RL::NameTable[3][nameLength] = {"dct_coeff_first_RL", "dct_coeff_next_RL", "Table15"};
// The first two leave out the codes of more than 15 bits with their sign.
int const CHuffman_RL::g_iDivisions[3] = {159, 160, 224};

Kel32u *CDVHuffman::pDecodeTable;

// ---- class --------------------------------------------------------------------

CHuffmanTables::Tables CHuffman::tables() const {
    return {"Huffman", NameTable, pSrcTable, g_iDivisions, 6};
}

CHuffmanTables::Tables CHuffman_RL::tables() const {
    return {"HuffmanRL", NameTable, pSrcTable, g_iDivisions, 3};
}

rkString CHuffmanTables::allNames() const {
    const Tables all = tables();
    rkString names;
    for (int i = 0; i < all.count; ++i) {
        if (i > 0) names << ",";
        names << all.names[i];
    }
    return names;
}

bool CHuffmanTables::canStart() {
    CPerfTest::canStart();
    readSettings(tables().section);
    select(readKey(tables().section, "Table", allNames()));
    return true;
}

void CHuffmanTables::select(rkString list) {
    const Tables all = tables();
    rkStringList words;
    list.parse(words, ",");
    m_index = 0;
    bool any = false;
    for (int i = 0; i < all.count; ++i) {
        m_selected[i] = false;
        for (auto word = words.begin(); word != words.end(); ++word)
            m_selected[i] |= strcmp((*word).c_str(), all.names[i]) == 0;
        any |= m_selected[i];
    }
    if (!any) m_selected[0] = true;
}

int CHuffmanTables::nextSelected() const {
    int index = m_index;
    while (index < tables().count && !m_selected[index]) ++index;
    return index;
}

bool CHuffmanTables::canContinue() {
    if (m_repeat <= 0) return false;
    m_index = nextSelected();
    if (m_index == tables().count) {
        if (--m_repeat == 0) return false;
        m_index = 0;
        m_index = nextSelected();
    }
    pSrcTbl = tables().tables[m_index];
    return true;
}

void CHuffmanTables::freeTable() {
    keliHuffmanTableFree_32s(pDecodeTable);
    pDecodeTable = nullptr;
}

void CHuffmanTables::flushData() {
    ++m_index;
    freeTable();
}

double CHuffmanTables::getDivisor() {
    const Tables all = tables();
    return all.divisors[m_index < all.count ? m_index : 0];
}

void CHuffmanTables::parmsToCstrm() {
    g_cstrm << tables().names[m_index];
}

bool CDVHuffman::canStart() {
    CPerfTest::canStart();
    readSettings("DVHuffman");
    return true;
}

bool CDVHuffman::canContinue() {
    if (m_repeat <= 0) return false;
    --m_repeat;
    return true;
}

void CDVHuffman::freeTable() {
    keliFreeHuffmanTable_DV_32u(pDecodeTable);
    pDecodeTable = nullptr;
}

void CDVHuffman::flushData() {
    freeTable();
}

static int codesOf(unsigned int const *table) {
    int n = 0;
    while (table[n] != 0) ++n;
    return n;
}

double CDVHuffman::getDivisor() {
    return codesOf(dvTable1) + codesOf(dvTable2);
}
