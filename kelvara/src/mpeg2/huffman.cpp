// huffman.cpp - tables for decoding from lists of codes.

#include "../common/checks.h"
#include "../common/samples.h"
#include "../common/vlctable.h"
#include "kelvc.h"

#include <cstdlib>
#include <new>

namespace kelvara {

static bool isLevel(int value) {
    return value >= -32768 && value <= 32767;
}

// ---- how a code of the list is read: false if a number is out of range -----------

struct ValueCode {
    static constexpr int elements = 3;

    static bool read(const Samples<Kel32s> &list, VlcCode &code) {
        code.value = list(0, 2);
        return isLevel(code.value);
    }
};

struct RunLevelCode {
    static constexpr int elements = 4;

    static bool read(const Samples<Kel32s> &list, VlcCode &code) {
        const int run = list(0, 2), level = list(0, 3);
        if (run < 0 || run > 127 || !isLevel(level)) return false;
        code.value = runLevelValue(run, level);
        return true;
    }
};

template <class Code>
static KelStatus readCodes(const Kel32s *pCodes, std::vector<VlcCode> &codes) {
    for (Samples<Kel32s> list(pCodes, 0); list(0, 0) != 0; list = list.from(0, Code::elements)) {
        VlcCode code{list(0, 0), static_cast<Kel32u>(list(0, 1)), 0};
        if (code.length < 0 || !Code::read(list, code)) return kelStsRangeErr;
        codes.push_back(code);
    }
    return kelStsNoErr;
}

template <class Code>
static KelStatus initTable(const Kel32s *pCodes, Kel32s **ppTable) {
    if (anyNull(pCodes) || anyNull(ppTable)) return kelStsNullPtrErr;
    try {
        std::vector<VlcCode> codes;
        const KelStatus status = readCodes<Code>(pCodes, codes);
        return status == kelStsNoErr ? buildVlcTable(codes, ppTable) : status;
    } catch (const std::bad_alloc &) {
        return kelStsMemAllocErr;
    }
}

} // namespace kelvara

using namespace kelvara;

KelStatus keliHuffmanTableInitAlloc_32s(const Kel32s *pCodes, Kel32s **ppTable) {
    return initTable<ValueCode>(pCodes, ppTable);
}

KelStatus keliHuffmanRunLevelTableInitAlloc_32s(const Kel32s *pCodes, Kel32s **ppTable) {
    return initTable<RunLevelCode>(pCodes, ppTable);
}

void keliHuffmanTableFree_32s(Kel32s *pTable) {
    std::free(pTable);
}
