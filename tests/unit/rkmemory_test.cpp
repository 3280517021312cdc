// rkmemory_test.cpp - tracked memory: placement, records, the walk, what surrounds a block.

#include <gtest/gtest.h>

#include <limits.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include <string>

#include "capture.h"
#include "freshstart.h"
#include "rkmemory.h"
#include "rkobject.h"

namespace {

int offset(void *p) {
    return static_cast<int>(reinterpret_cast<uintptr_t>(p) % 64);
}

void *at(uintptr_t address) {
    return reinterpret_cast<void *>(address);
}

uintptr_t aligned(uintptr_t address, int align) {
    return reinterpret_cast<uintptr_t>(getAlignedPtr(at(address), align));
}

// What the log shows at the output level while action runs.
template <class Action>
std::string logged(int level, Action action) {
    CaptureLog log(level);
    action();
    return log.text();
}

std::string hex(void *p) {
    rkString text;
    text << p;
    return text.c_str();
}

} // namespace

// ---- raw blocks -----------------------------------------------------------------

TEST(RkMemory, RawBlocksLieOnABoundary) {
    for (int size : {0, 1, 63, 64, 1000, 100000}) {
        void *block = rk_malloc(size);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(offset(block), 0);
        memset(block, 0xA5, size);
        rk_free(block);
    }
}

TEST(RkMemory, NegativeRawSizeFails) {
    EXPECT_EQ(rk_malloc(-1), nullptr);
    EXPECT_EQ(rk_malloc(INT_MIN), nullptr);
}

TEST(RkMemory, FreeOfNullDoesNothing) {
    AddressList *list = pAddressList;
    pAddressList = nullptr;
    rk_free(nullptr);
    rkFree(nullptr);
    EXPECT_EQ(pAddressList, nullptr);
    pAddressList = list;
}

// ---- placement --------------------------------------------------------------------

TEST(RkMemory, AlignedPointerFromABoundaryIsASum) {
    for (int m = 0; m < 64; ++m) EXPECT_EQ(aligned(6400, m), 6400u + m);
}

TEST(RkMemory, AlignedPointerFromElsewhereIsAMask) {
    EXPECT_EQ(aligned(6401, 0), 6464u);
    EXPECT_EQ(aligned(6410, 3), 6464u + (73 % 64 & 3));
    EXPECT_EQ(aligned(6410, 16), 6464u + (73 % 64 & 16));
    EXPECT_EQ(aligned(6463, 62), 6464u + 62);
}

TEST(RkMemory, AlignedPointerOfANegativeAlignment) {
    EXPECT_EQ(aligned(6400, -1), 6400u + 63); // bit 6 is clear already
    EXPECT_EQ(aligned(6464, -1), 6463u);      // bit 6 goes
}

TEST(RkMemory, BlocksAreMultiplesOf64) {
    void *p = rkMalloc(100, 0, 0, nullptr);
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(offset(p), 0);
    rkFree(p);
}

TEST(RkMemory, AlignmentIsTheDistanceFromTheBoundary) {
    void *p = rkMalloc(100, 3, 512, nullptr);
    EXPECT_EQ(offset(p), 3);
    void *q = rkMalloc(100, 67, 0, nullptr);
    EXPECT_EQ(offset(q), 3);
    rkFree(p);
    rkFree(q);
}

TEST(RkMemory, ShiftMovesTheBlock) {
    void *block;
    void *p = rk_malloc(block, 100, 3, 512);
    EXPECT_EQ(static_cast<char *>(p) - static_cast<char *>(block), 515);
    rk_free(block);
}

TEST(RkMemory, EveryPlacementHoldsItsBytes) {
    for (int align = -70; align <= 70; ++align) {
        for (int shift : {0, 1, 31, 32, 62, 63, 64, 65, 512, 32256}) {
            void *block;
            void *p = rk_malloc(block, 40, align, shift);
            ASSERT_NE(p, nullptr) << align << ' ' << shift;
            memset(p, 0xA5, 40);
            rk_free(block);
        }
    }
}

TEST(RkMemory, SizesThatCannotBeFail) {
    void *block = &block;
    EXPECT_EQ(rk_malloc(block, -5, 0, 0), nullptr);
    EXPECT_EQ(block, nullptr);
    EXPECT_EQ(rk_malloc(block, INT_MAX, 63, INT_MAX), nullptr);
    EXPECT_EQ(rk_malloc(block, INT_MAX - 64, 1, 0), nullptr);
    EXPECT_EQ(rk_malloc(block, INT_MIN, INT_MIN, INT_MIN), nullptr);
}

TEST(RkMemory, ShiftOutOfTheBlockFails) {
    void *block;
    EXPECT_EQ(rk_malloc(block, 10000, 0, -512), nullptr);
    EXPECT_EQ(block, nullptr);
}

TEST(RkMemory, SmallNegativeShiftStaysBehindTheSlot) {
    void *block;
    void *p = rk_malloc(block, 100, 0, -64);
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(static_cast<char *>(p) - static_cast<char *>(block), -64);
    memset(p, 0xA5, 100);
    rk_free(block);
}

// ---- records ------------------------------------------------------------------------

TEST(RkMemory, RecordTellsSizeAndOwner) {
    int dummy, size = 0;
    void *object = nullptr;
    void *p = rkMalloc(100, 5, 64, &dummy);
    EXPECT_TRUE(rkMallocInfo(p, &size, &object));
    EXPECT_EQ(size, 100);
    EXPECT_EQ(object, &dummy);
    EXPECT_TRUE(rkMallocInfo(p, nullptr, nullptr));
    EXPECT_FALSE(rkMallocInfo(static_cast<char *>(p) + 1, &size, &object));
    rkFree(p);
    EXPECT_FALSE(rkMallocInfo(p, nullptr, nullptr));
}

TEST(RkMemory, OutputFormHasNoOwner) {
    void *p = nullptr, *object = &p;
    void *result = rkMalloc(p, 10, 0, 0);
    EXPECT_EQ(result, p);
    ASSERT_NE(p, nullptr);
    EXPECT_TRUE(rkMallocInfo(p, nullptr, &object));
    EXPECT_EQ(object, nullptr);
    rkFree(p);
}

TEST(RkMemory, OutputFormGivesNullOnFailure) {
    void *p = &p;
    EXPECT_EQ(rkMalloc(p, -1, 0, 0), nullptr);
    EXPECT_EQ(p, nullptr);
}

TEST(RkMemory, ListAppearsWithTheFirstBlock) {
    rkFreeAll();
    EXPECT_EQ(pAddressList, nullptr);
    EXPECT_FALSE(rkMallocInfo(&pAddressList, nullptr, nullptr));
    EXPECT_EQ(rkMalloc(-1, 0, 0, nullptr), nullptr);
    EXPECT_EQ(pAddressList, nullptr);
    void *p = rkMalloc(1, 0, 0, nullptr);
    ASSERT_NE(pAddressList, nullptr);
    EXPECT_EQ(pAddressList->size(), 1);
    rkFree(p);
    EXPECT_TRUE(pAddressList->empty());
}

TEST(RkMemory, DoubleFreeDoesNothingTheSecondTime) {
    void *p = rkMalloc(10, 0, 0, nullptr);
    void *q = rkMalloc(10, 0, 0, nullptr);
    rkFree(p);
    rkFree(p);
    EXPECT_EQ(pAddressList->size(), 1);
    rkFree(q);
}

TEST(RkMemory, UnknownPointersAreNotFreed) {
    void *p = rkMalloc(10, 0, 0, nullptr);
    int other = 0;
    rkFree(&other);
    EXPECT_EQ(pAddressList->size(), 1);
    rkFree(p);
}

TEST(RkMemory, FindGivesTheWholeRecord) {
    void *p = rkMalloc(10, 3, 64, nullptr);
    Address record = {};
    EXPECT_TRUE(pAddressList->find(p, record));
    EXPECT_EQ(record.alignedPointer, p);
    EXPECT_EQ(static_cast<char *>(record.address) + 67, p);
    EXPECT_FALSE(pAddressList->find(record.address, record));
    EXPECT_EQ(pAddressList->remove(&record), nullptr);
    rkFree(p);
}

// ---- the walk -----------------------------------------------------------------------

TEST(RkMemory, WalkOverNothingGivesNull) {
    EXPECT_EQ(rkMallocFirst(nullptr, nullptr), nullptr);
    EXPECT_EQ(rkMallocNext(nullptr, nullptr), nullptr);
    rkFree(rkMalloc(1, 0, 0, nullptr));
    EXPECT_EQ(rkMallocNext(nullptr, nullptr), nullptr);
    EXPECT_EQ(rkMallocFirst(nullptr, nullptr), nullptr);
}

TEST(RkMemory, WalkGoesThroughAllInOrder) {
    int owner, size;
    void *object;
    void *p = rkMalloc(10, 0, 0, nullptr), *q = rkMalloc(20, 0, 0, &owner);
    EXPECT_EQ(rkMallocFirst(&size, &object), p);
    EXPECT_EQ(size, 10);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(rkMallocNext(&size, &object), q);
    EXPECT_EQ(size, 20);
    EXPECT_EQ(object, &owner);
    EXPECT_EQ(rkMallocNext(&size, &object), nullptr);
    EXPECT_EQ(rkMallocNext(nullptr, nullptr), nullptr);
    EXPECT_EQ(rkMallocFirst(nullptr, nullptr), p);
    rkFree(p);
    rkFree(q);
}

TEST(RkMemory, WalkMayFreeTheBlockThatComesNext) {
    void *p = rkMalloc(1, 0, 0, nullptr), *q = rkMalloc(2, 0, 0, nullptr), *r = rkMalloc(3, 0, 0, nullptr);
    EXPECT_EQ(rkMallocFirst(nullptr, nullptr), p);
    rkFree(q);
    EXPECT_EQ(rkMallocNext(nullptr, nullptr), r);
    rkFree(p);
    rkFree(r);
}

TEST(RkMemory, FreeAllForgetsTheRecords) {
    void *p = rkMalloc(10, 0, 0, nullptr);
    AddressList *old = pAddressList;
    rkFreeAll();
    EXPECT_EQ(pAddressList, nullptr);
    EXPECT_FALSE(rkMallocInfo(p, nullptr, nullptr));
    EXPECT_EQ(rkMallocFirst(nullptr, nullptr), nullptr);
    memset(p, 0xA5, 10); // the block itself is still there
    void *q = rkMalloc(10, 0, 0, nullptr);
    EXPECT_NE(pAddressList, old);
    EXPECT_EQ(pAddressList->size(), 1);
    EXPECT_FALSE(rkMallocInfo(p, nullptr, nullptr));
    rkFree(q);
}

TEST(RkMemory, FreeAllOfNothingIsAllowed) {
    rkFreeAll();
    EXPECT_EQ(pAddressList, nullptr);
}

TEST(RkMemory, MarkersAreTwoObjects) {
    ASSERT_NE(MEM_OBJECT_IS_BUFFER, nullptr);
    ASSERT_NE(MEM_OBJECT_IS_SUBOBJECT, nullptr);
    EXPECT_NE(MEM_OBJECT_IS_BUFFER, MEM_OBJECT_IS_SUBOBJECT);
}

// ---- messages -------------------------------------------------------------------------

TEST(RkMemory, FailureIsReported) {
    std::string text = logged(1, [] { EXPECT_EQ(rkMalloc(-7, 0, 0, nullptr), nullptr); });
    EXPECT_EQ(text, "-- Memory error: can't allocate -7 bytes\n");
}

TEST(RkMemory, BlocksAreLoggedAtTheMemoryLevel) {
    void *p = nullptr;
    std::string text = logged(32, [&] { p = rkMalloc(10, 3, 64, nullptr); });
    Address record = {};
    ASSERT_TRUE(pAddressList->find(p, record));
    std::string tail = "size:10  address:" + hex(record.address) + "  alignedPointer:" + hex(p) + "\n";
    EXPECT_EQ(text, " - rkMalloc: " + tail);
    EXPECT_EQ(logged(32, [&] { rkFree(p); }), " - rkFree: " + tail);
    EXPECT_EQ(logged(32, [&] { rkFree(p); }), "");
}

TEST(RkMemory, BlocksAreSilentAtOtherLevels) {
    EXPECT_EQ(logged(31, [] { rkFree(rkMalloc(10, 0, 0, nullptr)); }), "");
}

TEST(RkMemory, MessagesLeaveTheLevelAsItWas) {
    MessageLevel before = g_ostrm.msgLevel();
    rkFree(rkMalloc(10, 0, 0, nullptr));
    rkMalloc(-1, 0, 0, nullptr);
    EXPECT_EQ(g_ostrm.msgLevel(), before);
    EXPECT_TRUE(g_ostrm.m_msgStack.empty());
}

// ---- settings ---------------------------------------------------------------------------

TEST(RkMemory, SettingsStartWithTheirDefaults) {
    EXPECT_EQ(rkGetVectorShift(), 512);
    EXPECT_EQ(rkGetVectorAlign(), 0);
    EXPECT_TRUE(rkGetAlignSrc());
    EXPECT_TRUE(rkGetAlignByByte());
}

TEST(RkMemory, SettingsAreKept) {
    rkSetVectorShift(128);
    rkSetAlignSrc(false);
    rkSetAlignByByte(false);
    EXPECT_EQ(rkGetVectorShift(), 128);
    EXPECT_FALSE(rkGetAlignSrc());
    EXPECT_FALSE(rkGetAlignByByte());
}

TEST(RkMemory, VectorAlignIsKeptModulo64) {
    rkSetVectorAlign(65);
    EXPECT_EQ(rkGetVectorAlign(), 1);
    rkSetVectorAlign(-1);
    EXPECT_EQ(rkGetVectorAlign(), -1);
    rkSetVectorAlign(64);
    EXPECT_EQ(rkGetVectorAlign(), 0);
}

// ---- poison -----------------------------------------------------------------------------

#if defined(__SANITIZE_ADDRESS__)
#define SANITIZED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SANITIZED
#endif
#endif

#ifdef SANITIZED
#include <sanitizer/asan_interface.h>

namespace {

// All of the size bytes can be touched, and nothing of what surrounds them. In front of a misaligned block
// the sanitizer's grain is 8 bytes.
void expectIsland(void *pointer, int size) {
    char *p = static_cast<char *>(pointer);
    for (int i = 0; i < size; ++i) EXPECT_FALSE(__asan_address_is_poisoned(p + i)) << i;
    for (int i = 0; i < 64; ++i) EXPECT_TRUE(__asan_address_is_poisoned(p + size + i)) << size << " + " << i;
    char *front = p - reinterpret_cast<uintptr_t>(p) % 8;
    for (int i = 1; i <= 128; ++i) EXPECT_TRUE(__asan_address_is_poisoned(front - i)) << "-" << i;
}

} // namespace

TEST(RkMemoryPoison, RawBlocksAreIslands) {
    for (int size = 0; size < 40; ++size) {
        void *block = rk_malloc(size);
        expectIsland(block, size);
        rk_free(block);
    }
}

TEST(RkMemoryPoison, PlacedBlocksAreIslands) {
    for (int align = 0; align < 64; ++align) {
        for (int size = 1; size < 20; ++size) {
            void *p = rkMalloc(size, align, 512, nullptr);
            expectIsland(p, size);
            rkFree(p);
        }
    }
}

TEST(RkMemoryPoison, OneByteBehindEndsTheProgram) {
    char *p = static_cast<char *>(rkMalloc(13, 0, 0, nullptr));
    EXPECT_DEATH(static_cast<char volatile *>(p)[13] = 1, "use-after-poison");
    rkFree(p);
}

TEST(RkMemoryPoison, OneByteInFrontEndsTheProgram) {
    char *p = static_cast<char *>(rkMalloc(13, 0, 0, nullptr));
    EXPECT_DEATH(static_cast<char volatile *>(p)[-1] = 1, "use-after-poison");
    rkFree(p);
}

TEST(RkMemoryPoison, FreedMemoryServesAgain) {
    for (int i = 0; i < 100; ++i) rk_free(rk_malloc(1000));
    char *p = static_cast<char *>(malloc(1256));
    for (int i = 0; i < 1256; ++i) EXPECT_FALSE(__asan_address_is_poisoned(p + i));
    free(p);
}
#endif
