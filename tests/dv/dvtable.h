// dvtable.h - the library's table of the codes of DV, and its scans, for a test's lifetime.

#ifndef RAKOVA_TESTS_DVTABLE_H
#define RAKOVA_TESTS_DVTABLE_H

#include <stdexcept>

#include "dvformat.h"
#include "dvtables.h"
#include "kelvc.h"

namespace dv {

class DecodingTable {
public:
    DecodingTable() {
        if (keliInitAllocHuffmanTable_DV_32u(dvTable1, dvTable2, &m_table) != kelStsNoErr)
            throw std::runtime_error("no table");
        for (int i = 0; i < 128; ++i) m_scans[i] = static_cast<Kel32u>(scans[i / 64][i % 64]);
    }
    ~DecodingTable() { keliFreeHuffmanTable_DV_32u(m_table); }
    DecodingTable(DecodingTable const &) = delete;
    DecodingTable &operator=(DecodingTable const &) = delete;

    Kel32u const *codes() const { return m_table; }
    Kel32u const *scan() const { return m_scans; }

private:
    Kel32u *m_table = nullptr;
    Kel32u m_scans[128];
};

} // namespace dv

#endif
