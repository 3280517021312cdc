// kmtest.cpp - the test of a library primitive.

#include "kmtest.h"

#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "rkcstream.h"
#include "rkregister.h"
#include "rkstream.h"
#include "rktrace.h"

bool kmTest::m_checkErrorsOnly = false;

bool kmTest::tobeRun(rkConditions &conditions) {
    return rkTest::tobeRun(conditions);
}

rkResult kmTest::run() {
    m_checkErrorsOnly = false;
    kmVector::m_seed = 7;
    return rkTest::run();
}

int kmTest::compareFunc(rkTest const *other) const {
    return m_func.compare(kmFunc(other->m_name));
}

void kmTest::funcToCstrm() {
    g_cstrm << m_func.prefix() + m_func.baseName() << m_func.typeName() << m_func.descrName();
}

bool kmTest::isFloatFunction() {
    return rkTest::isFloatFunction() && (m_func.find("32f") >= 0 || m_func.find("64f") >= 0);
}

// The registration line shows the name of our own macro.
rkString kmTest::regInfo() {
    rkString text = rkTest::regInfo();
    int i = text.find("RK_");
    return i < 0 ? text : text.substr(0, i) + "KM_" + text.substr(i + 3);
}

void kmTest::regCacheParm(rkIterator<KeliSize> &iter, kmImage &image, rkCacheIterator::SetNewValue set) {
    regCacheParm(iter, &image, set);
}

void kmTest::regCacheParm(rkIterator<KeliSize> &iter, rkCacheIterator::SetNewValue set) {
    regCacheParm(iter, nullptr, set);
}

void kmTest::regCacheParm(rkIterator<KeliSize> &iter, kmImage *image, rkCacheIterator::SetNewValue set) {
    if (m_cache && !m_cacheIterator) {
        m_cacheIterator = new rkCacheIteratorSize(iter, image, set);
        m_parms.push_back(m_cacheIterator);
    } else {
        m_parms.push_back(&iter);
    }
}

// ---- the status of the library -----------------------------------------------

namespace {

void printStatus(KelStatus status, rkString const &name) {
    bool error = status < 0;
    g_ostrm << (error ? MsgError : MsgWarning) << (error ? "--KEL ERROR. " : "--KEL WARNING. ")
            << "status = " << status;
    if (name.length() > 0) g_ostrm << " in " << name;
    g_ostrm << ": " << kel_GetStatusString(status) << "\n" << EndMessage;
}

} // namespace

rkResult kmTest::checkStatus(KelStatus status, rkString const &name) {
    if (status == kelStsNoErr || (status > 0 && m_checkErrorsOnly)) return rkResSuccess;
    printStatus(status, name);
    rkResult result = status < 0 ? rkResLibError : rkResLibWarning;
    bool unseen = status > 0 && g_ostrm.outLevel() < MsgWarning;
    raiseResult(unseen ? rkResSuccess : result);
    return result;
}

// ---- the debug view of the data ----------------------------------------------

int kmTest::printAllMemoryBlocks(rkString title) {
    if (!g_ostrm.beginMessage(MsgData)) return 0;
    g_trace.traceIn("printAllMemoryBlocks");
    printFirstDebugLine(title);
    int n = 0, size = 0;
    void *owner = nullptr;
    for (void *block = rkMallocFirst(&size, &owner); block; block = rkMallocNext(&size, &owner)) {
        if (!owner || owner == MEM_OBJECT_IS_SUBOBJECT) continue;
        printBlock(++n, block, static_cast<rkObject *>(owner), size);
    }
    printLastDebugLine(title);
    g_ostrm.endMessage();
    g_trace.traceOut("printAllMemoryBlocks");
    return n;
}

void kmTest::printBlock(int n, void *block, rkObject *owner, int size) {
    printFirstBlockLine(n, owner, size);
    if (owner == MEM_OBJECT_IS_BUFFER) {
        printByteBlock(block, size);
    } else {
        printVectorBlock(dynamic_cast<kmVector *>(owner));
    }
    printLastBlockLine(n, owner);
}

void kmTest::printFirstDebugLine(rkString title) {
    g_ostrm << MsgData << "======== OBJECTS OUTPUT START === " << title
            << " === OBJECTS OUTPUT START ========\n"
            << EndMessage;
}

void kmTest::printLastDebugLine(rkString title) {
    g_ostrm << MsgData << "======== OBJECTS OUTPUT END === " << title << " === OBJECTS OUTPUT END ========\n"
            << EndMessage;
}

// A plain buffer's owner is a marker without a text.
void kmTest::printFirstBlockLine(int n, rkObject *object, int size) {
    rkString info = "MemoryBlock size=";
    if (reinterpret_cast<intptr_t>(object) > 0) {
        info = object->objectInfo();
    } else {
        info << size;
    }
    g_ostrm << MsgData << "======== Object " << n << ": " << info << "\n" << EndMessage;
}

void kmTest::printLastBlockLine(int, rkObject *) {
    g_ostrm << MsgData << "\n" << EndMessage;
}

// An owner that is no vector has no text.
void kmTest::printVectorBlock(kmVector *vector) {
    if (vector) g_ostrm << MsgData << vector->getString() << "\n" << EndMessage;
}

void kmTest::printByteBlock(void *block, int size) {
    g_ostrm << MsgData << kmVector::getByteString(block, size) << "\n" << EndMessage;
}

// ---- what the suites of video coding share -----------------------------------

namespace {

// A side counts where its digits touch the "x".
const int sides[] = {2, 4, 8, 16};

int widthBefore(rkString const &name, int x) {
    for (int side : sides) {
        rkString text;
        text << side;
        if (name.find(text, x - 2) == x - text.length()) return side;
    }
    return 0;
}

int heightBehind(rkString const &name, int x) {
    for (int side : sides) {
        rkString text;
        text << side;
        if (name.find(text, x) == x + 1) return side;
    }
    return 0;
}

bool isBlockSize(rkString const &name, KeliSize &size, int x) {
    int width = widthBefore(name, x);
    int height = heightBehind(name, x);
    if (width == 0 || height == 0) return false;
    size.width = width;
    size.height = height;
    return true;
}

// The position does not move past an "x" that belongs to no size: such a name ends the search.
bool findBlockSize(rkString const &name, KeliSize &size, int &pos) {
    int x = name.find("x", pos);
    if (x < 0 || !isBlockSize(name, size, x)) return false;
    pos = x + 1;
    return true;
}

} // namespace

bool kmvcTest::getBlockSize(KeliSize &size, int n) {
    int pos = 0;
    bool found = false;
    for (int i = 0; i < n; ++i) {
        found = findBlockSize(m_func, size, pos);
        if (!found) break;
    }
    return found;
}

void kmvcTest::setRandNonZero(kmVector &v, int n, int low, int high) {
    unsigned int range = static_cast<unsigned int>(high) - static_cast<unsigned int>(low) + 1u;
    int values = static_cast<int>(range);
    if (values == 0) return; // low stands right above high, or all 32 bits are asked for
    for (int i = 0; i < n;) {
        int r = static_cast<int>(static_cast<unsigned int>(rand() % values) + static_cast<unsigned int>(low));
        if (r != 0) v.setIndex(i++, SetValue, r, 0.0);
    }
}
