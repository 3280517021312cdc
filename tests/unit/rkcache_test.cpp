// rkcache_test.cpp - tests of rkcache.

#include <gtest/gtest.h>
#include <limits.h>

#include "consolescript.h"
#include "freshstart.h"
#include "rkcache.h"
#include "rkcpu.h"
#include "rkmemory.h"
#include "rkstepiterator.h"
#include "text.h"

namespace {

struct SizedObject : rkObject {
    int objectSize() const override { return m_size; }
    int m_size = 0;
};

// Records of blocks that were never allocated: only their sizes are asked for.
void setBlocks(std::initializer_list<int> sizes) {
    static char place;
    if (!pAddressList) pAddressList = new AddressList;
    pAddressList->clear();
    for (int size : sizes) pAddressList->push_back({&place, &place, size, nullptr});
}

unsigned int oneMebibyte() {
    return 1 << 20;
}

unsigned int unknownCache() {
    return 0;
}

unsigned int fourGigabytes() {
    return 4000000000u;
}

// What the test's own way of setting was asked.
int g_askedSize, g_askedLimit, g_asked;
bool g_askedFine, g_canSet = true;
rkParameter *g_askedParm;

bool ownSetting(rkParameter *parm, int size, int limit, bool fine) {
    ++g_asked;
    g_askedParm = parm;
    g_askedSize = size;
    g_askedLimit = limit;
    g_askedFine = fine;
    return g_canSet;
}

// A parameter "len" of 16 and 32 in a cache of 1 MiB: in cache 104857 to 943718 bytes, out of it 1101004 on.
class RkCacheIterator : public testing::Test {
protected:
    RkCacheIterator() {
        g_asked = 0;
        g_canSet = true;
        rkCacheIterator::m_cacheSource = oneMebibyte;
        m_len.init("len", "Length of row");
        m_len.add(16);
        m_len.add(32);
        m_cache.firstValue();
    }
    // Makes the data and asks.
    bool fits(int objectSize, int totalSize) {
        m_object.m_size = objectSize;
        setBlocks({totalSize});
        return m_cache.validateSize();
    }
    rkIterator<int> m_len;
    SizedObject m_object;
    rkCacheIteratorInt m_cache{m_len, &m_object, nullptr};
};

} // namespace

// ---- bounds -------------------------------------------------------------------

TEST_F(RkCacheIterator, BoundsOfBothStates) {
    EXPECT_EQ(1048576, m_cache.cacheSize());
    EXPECT_EQ(104857, m_cache.lowSize());
    EXPECT_EQ(943718, m_cache.highSize());
    EXPECT_EQ("inCache", str(m_cache.getComment()));
    m_cache.nextValue();
    EXPECT_EQ(1101004, m_cache.lowSize());
    EXPECT_EQ(2147483647, m_cache.highSize());
    EXPECT_EQ("outofCache", str(m_cache.getComment()));
    m_cache.m_value = 2;
    EXPECT_EQ("", str(m_cache.getComment()));
}

TEST_F(RkCacheIterator, AsksTheProcessorForItsCache) {
    rkCacheIterator::m_cacheSource = rkGetMaxCacheSizeB;
    EXPECT_EQ(rkGetMaxCacheSizeB(), static_cast<unsigned int>(m_cache.cacheSize()));
}

TEST_F(RkCacheIterator, UnknownCacheIsTooSmallForAnything) {
    rkCacheIterator::m_cacheSource = unknownCache;
    EXPECT_EQ(0, m_cache.lowSize());
    EXPECT_EQ(0, m_cache.highSize());
    EXPECT_FALSE(fits(1, 1));
    EXPECT_TRUE(fits(0, 0));
}

TEST_F(RkCacheIterator, UnknownCacheEndsTheTriesAtOnce) {
    rkCacheIterator::m_cacheSource = unknownCache;
    EXPECT_FALSE(fits(100, 100));
    EXPECT_FALSE(m_cache.repeatValue());
    EXPECT_EQ(16, m_len.value());
}

TEST_F(RkCacheIterator, OutOfAnUnknownCacheAllFits) {
    rkCacheIterator::m_cacheSource = unknownCache;
    m_cache.nextValue();
    EXPECT_TRUE(fits(0, 0));
    EXPECT_TRUE(fits(INT_MAX, INT_MAX));
}

TEST_F(RkCacheIterator, HugeCacheIsCutToAnInt) {
    rkCacheIterator::m_cacheSource = fourGigabytes;
    EXPECT_EQ(INT_MAX, m_cache.cacheSize());
    m_cache.nextValue();
    EXPECT_EQ(INT_MAX, m_cache.lowSize());
}

TEST_F(RkCacheIterator, TotalIsTheSumOfAllBlocks) {
    setBlocks({1, 20, 300});
    EXPECT_EQ(321, m_cache.getTotalSize());
    setBlocks({});
    EXPECT_EQ(0, m_cache.getTotalSize());
    setBlocks({2000000000, 2000000000});
    EXPECT_EQ(INT_MAX, m_cache.getTotalSize());
}

TEST_F(RkCacheIterator, ObjectSizeOfTheObject) {
    m_object.m_size = 77;
    EXPECT_EQ(77, m_cache.getObjectSize());
    rkCacheIteratorInt whole(m_len, nullptr, nullptr);
    EXPECT_EQ(0, whole.getObjectSize());
}

// ---- the walk -----------------------------------------------------------------

TEST_F(RkCacheIterator, WalksTwoStatesAndStartsTheFamilyInEach) {
    EXPECT_EQ(0, m_cache.value());
    EXPECT_EQ(16, m_len.value());
    m_len.m_value = 4096;
    m_cache.m_tries = 5;
    m_cache.m_info = "tries of the first state";
    m_cache.m_factor = 0.01;
    EXPECT_TRUE(m_cache.nextValue());
    EXPECT_EQ(1, m_cache.value());
    EXPECT_EQ(16, m_len.value());
    EXPECT_EQ(0, m_cache.m_tries);
    EXPECT_EQ("", str(m_cache.m_info));
    EXPECT_EQ(0.1, m_cache.m_factor);
    EXPECT_FALSE(m_cache.nextValue());
    EXPECT_TRUE(m_cache.firstValue());
    EXPECT_EQ(0, m_cache.value());
}

TEST_F(RkCacheIterator, EmptyFamilyHasNoState) {
    m_len.clear();
    EXPECT_FALSE(m_cache.firstValue());
}

TEST_F(RkCacheIterator, LooksLikeTheWrappedParameter) {
    CaptureLog log;
    g_istrm.m_data.set("len", "64;128");
    EXPECT_EQ(&g_istrm, &m_cache.fromIStream(g_istrm));
    m_len.firstValue();
    m_cache.toOStream(g_ostrm);
    EXPECT_EQ(" len = 64; 128\nlen=64 ", log.text());
    EXPECT_EQ("64", str(m_cache.valueString()));
    EXPECT_EQ("64; 128", str(m_cache.defaultString()));
    EXPECT_EQ("len = 64; 128", str(m_cache.description()));
    EXPECT_EQ("Length of row", str(m_cache.prompt()));
    EXPECT_EQ("", str(m_cache.validString()));
    rkCStream table;
    m_cache.toCStream(table);
    rkString cell;
    EXPECT_TRUE(table.getColm(0, cell));
    EXPECT_EQ("64", str(cell));
}

TEST_F(RkCacheIterator, KeepsANameOfItsOwn) {
    EXPECT_EQ("cacheIterator", str(m_cache.m_name));
}

TEST_F(RkCacheIterator, AsksTheQuestionOfASteppedFamily) {
    CaptureLog log;
    ConsoleScript console("4;8;+4\n");
    g_istrm.setIStream(&c_in);
    rkStepIterator<int> len;
    len.init("len", 1, 2, 1, StepPlus);
    rkCacheIteratorInt cache(len, nullptr, nullptr);
    cache.fromIStream(g_istrm);
    EXPECT_EQ("\n for len [1; 2; +1] = ", console.questions());
    EXPECT_EQ(" for (len = 4; len <= 8; len += 4)\n", log.text());
}

// ---- the check ----------------------------------------------------------------

TEST_F(RkCacheIterator, SizesOnTheBoundsFit) {
    CaptureLog log;
    m_cache.m_tries = 5;
    m_cache.m_info = "earlier tries";
    EXPECT_TRUE(fits(104857, 943718));
    EXPECT_EQ(0, m_cache.m_tries);
    EXPECT_EQ("", str(m_cache.m_info));
    EXPECT_EQ(104857, m_cache.m_objectSize);
    EXPECT_EQ(943718, m_cache.m_totalSize);
    EXPECT_EQ("", log.text());
}

TEST_F(RkCacheIterator, TooSmallInCache) {
    CaptureLog log;
    EXPECT_FALSE(fits(104856, 500000));
    EXPECT_EQ("      inCache try: cacheParm=16 objectSize=104856 < 104857\n", log.text());
    EXPECT_EQ(log.text(), str(m_cache.m_info));
    EXPECT_FALSE(m_cache.m_wasTooBig);
    EXPECT_EQ(0, m_cache.m_tries);
    EXPECT_EQ(0.1, m_cache.m_factor);
}

TEST_F(RkCacheIterator, TooBigForTheCache) {
    CaptureLog log;
    EXPECT_FALSE(fits(200000, 943719));
    EXPECT_EQ("      inCache try: cacheParm=16 totalSize=943719 > 943718\n", log.text());
    EXPECT_TRUE(m_cache.m_wasTooBig);
}

TEST_F(RkCacheIterator, TooSmallOutOfCache) {
    CaptureLog log;
    m_cache.nextValue();
    EXPECT_FALSE(fits(1101003, 9999999));
    EXPECT_EQ("      outofCache try: cacheParm=16 objectSize=1101003 < 1101004\n", log.text());
    EXPECT_TRUE(fits(1101004, INT_MAX));
}

TEST_F(RkCacheIterator, WithoutAnObjectTheTotalCounts) {
    CaptureLog log;
    rkCacheIteratorInt whole(m_len, nullptr, nullptr);
    whole.firstValue();
    setBlocks({100});
    EXPECT_FALSE(whole.validateSize());
    EXPECT_EQ("      inCache try: cacheParm=16 totalSize=100 < 104857\n", log.text());
    setBlocks({104857});
    EXPECT_TRUE(whole.validateSize());
}

TEST_F(RkCacheIterator, ObjectWithoutDataGivesWayToTheTotal) {
    CaptureLog log;
    EXPECT_FALSE(fits(0, 100));
    EXPECT_EQ("      inCache try: cacheParm=16 objectSize=100 < 104857\n", log.text());
    EXPECT_EQ(100, m_cache.m_objectSize);
}

TEST_F(RkCacheIterator, TextsOfAllTriesAreKept) {
    fits(10, 10);
    m_len.m_value = 32;
    fits(20, 20);
    EXPECT_EQ(
        "      inCache try: cacheParm=16 objectSize=10 < 104857\n"
        "      inCache try: cacheParm=32 objectSize=20 < 104857\n",
        str(m_cache.m_info));
}

TEST_F(RkCacheIterator, TriesAreSeenFromTheLevelOfResultsOn) {
    CaptureLog log(MsgError | MsgWarning);
    EXPECT_FALSE(fits(10, 10));
    EXPECT_EQ("", log.text());
}

TEST_F(RkCacheIterator, TooSmallAndTooBigLowersTheBoundOnce) {
    CaptureLog log;
    EXPECT_FALSE(fits(10, 1000000));
    EXPECT_EQ(
        "      inCache try: cacheParm=16 objectSize=10 < 104857\n"
        "      inCache try: cacheParm=16 totalSize=1000000 > 943718\n",
        log.text());
    EXPECT_EQ(0.01, m_cache.m_factor);
    EXPECT_EQ(10485, m_cache.lowSize());
    EXPECT_EQ(0, m_cache.m_tries);
    EXPECT_TRUE(m_cache.m_wasTooBig);
}

TEST_F(RkCacheIterator, TooSmallAndTooBigAgainIsGivenUp) {
    EXPECT_FALSE(fits(10, 1000000));
    EXPECT_FALSE(fits(10, 1000000));
    EXPECT_EQ(12, m_cache.m_tries);
    EXPECT_FALSE(m_cache.repeatValue());
    EXPECT_EQ(
        "      inCache try: cacheParm=16 objectSize=10 < 104857\n"
        "      inCache try: cacheParm=16 totalSize=1000000 > 943718\n"
        "      inCache try: cacheParm=16 objectSize=10 < 10485\n"
        "      inCache try: cacheParm=16 totalSize=1000000 > 943718\n",
        str(m_cache.m_info));
}

TEST_F(RkCacheIterator, LoweredBoundIsEnoughForTheObject) {
    EXPECT_FALSE(fits(20000, 1000000));
    EXPECT_FALSE(fits(20000, 1000000)) << "the total is still too big";
    EXPECT_EQ(0, m_cache.m_tries);
    EXPECT_TRUE(fits(10485, 500000));
}

TEST_F(RkCacheIterator, SwingIsAnsweredByTheLowerBound) {
    CaptureLog log;
    m_cache.m_tries = 1;
    EXPECT_FALSE(fits(200000, 1000000));
    m_cache.m_tries = 2;
    EXPECT_TRUE(fits(50000, 500000));
    EXPECT_EQ(
        "      inCache try: cacheParm=16 totalSize=1000000 > 943718\n"
        "      inCache try: cacheParm=16 objectSize=50000 < 104857\n",
        log.text());
    EXPECT_EQ(0.01, m_cache.m_factor);
    EXPECT_EQ(0, m_cache.m_tries);
    EXPECT_EQ("", str(m_cache.m_info));
}

TEST_F(RkCacheIterator, SwingBelowTheLowerBoundIsGivenUp) {
    CaptureLog log;
    m_cache.m_tries = 1;
    EXPECT_FALSE(fits(200000, 1000000));
    m_cache.m_tries = 2;
    EXPECT_FALSE(fits(5000, 500000));
    EXPECT_EQ(
        "      inCache try: cacheParm=16 totalSize=1000000 > 943718\n"
        "      inCache try: cacheParm=16 objectSize=5000 < 104857\n"
        "      inCache try: cacheParm=16 objectSize=5000 < 10485\n",
        log.text());
    EXPECT_EQ(12, m_cache.m_tries);
    EXPECT_FALSE(m_cache.m_wasTooBig);
}

TEST_F(RkCacheIterator, FirstSwingIsNotOneYet) {
    EXPECT_FALSE(fits(200000, 1000000));
    m_cache.m_tries = 1;
    EXPECT_FALSE(fits(50000, 500000));
    EXPECT_EQ(0.1, m_cache.m_factor);
    EXPECT_EQ(1, m_cache.m_tries);
}

TEST_F(RkCacheIterator, SmallAfterSmallIsNoSwing) {
    EXPECT_FALSE(fits(40000, 400000));
    m_cache.m_tries = 2;
    EXPECT_FALSE(fits(50000, 500000));
    EXPECT_EQ(0.1, m_cache.m_factor);
    EXPECT_EQ(2, m_cache.m_tries);
}

TEST_F(RkCacheIterator, BigAfterBigIsNoSwing) {
    EXPECT_FALSE(fits(200000, 2000000));
    m_cache.m_tries = 2;
    EXPECT_FALSE(fits(200000, 1000000));
    EXPECT_EQ(0.1, m_cache.m_factor);
    EXPECT_EQ(2, m_cache.m_tries);
}

TEST_F(RkCacheIterator, InfoIsToldWhereTheTriesWereNotSeen) {
    m_cache.m_info = "      the tries\n";
    {
        CaptureLog log(MsgError | MsgWarning);
        m_cache.outputInfo();
        EXPECT_EQ("      the tries\n", log.text());
    }
    CaptureLog log(MsgError | MsgWarning | MsgResult);
    m_cache.outputInfo();
    EXPECT_EQ("", log.text());
    EXPECT_EQ(MsgResult, g_ostrm.msgLevel());
}

// ---- tries --------------------------------------------------------------------

TEST_F(RkCacheIterator, TwelfthTryOfAStateIsOneTooMany) {
    rkCacheIteratorInt cache(m_len, nullptr, ownSetting);
    for (int i = 1; i <= 11; ++i) EXPECT_TRUE(cache.repeatValue()) << i;
    EXPECT_FALSE(cache.repeatValue());
    EXPECT_EQ(11, g_asked);
}

TEST_F(RkCacheIterator, TestsOwnWayIsAskedWithSizeAndLimit) {
    rkCacheIteratorInt cache(m_len, &m_object, ownSetting);
    cache.firstValue();
    m_object.m_size = 5000;
    setBlocks({6000});
    cache.validateSize();
    EXPECT_TRUE(cache.repeatValue());
    EXPECT_EQ(&m_len, g_askedParm);
    EXPECT_EQ(5000, g_askedSize);
    EXPECT_EQ(104857, g_askedLimit);
    EXPECT_FALSE(g_askedFine);
    g_canSet = false;
    EXPECT_FALSE(cache.repeatValue());
    EXPECT_TRUE(g_askedFine) << "the second try creeps";
}

TEST_F(RkCacheIterator, TooBigATotalIsMeasuredByTheUpperBound) {
    rkCacheIteratorInt cache(m_len, &m_object, ownSetting);
    cache.firstValue();
    m_object.m_size = 5000;
    setBlocks({2000000});
    cache.validateSize();
    EXPECT_TRUE(cache.setNewValue());
    EXPECT_EQ(2000000, g_askedSize);
    EXPECT_EQ(943718, g_askedLimit);
}

TEST_F(RkCacheIterator, BaseCannotSetAnything) {
    rkCacheIterator cache(m_len, nullptr, nullptr);
    EXPECT_FALSE(cache.setNewValueToParm(1000, 4000, false));
}

TEST_F(RkCacheIterator, FirstTryJumpsAndLaterOnesCreep) {
    fits(10000, 10000);
    EXPECT_TRUE(m_cache.repeatValue());
    EXPECT_EQ(128, m_len.value()) << "from 10000 to 80000, the last power of 2 below the bound";
    fits(80000, 80000);
    EXPECT_TRUE(m_cache.repeatValue());
    EXPECT_EQ(256, m_len.value());
    EXPECT_TRUE(fits(160000, 160000));
}

TEST_F(RkCacheIterator, ValueThatWouldBecomeZeroStays) {
    m_len.m_value = 1;
    EXPECT_FALSE(m_cache.setNewValueToParm(8000, 4000, false));
    EXPECT_FALSE(m_cache.setNewValueToParm(8000, 4000, true));
    EXPECT_EQ(1, m_len.value());
}

TEST_F(RkCacheIterator, SizeParameterIsSet) {
    rkIterator<KeliSize> block("block", "");
    block.add({16, 16});
    rkCacheIteratorSize cache(block, nullptr, nullptr);
    cache.firstValue();
    EXPECT_TRUE(cache.setNewValueToParm(1000, 4000, false));
    EXPECT_EQ("32x16", str(block.valueString()));
    block.m_value = {1, 1};
    EXPECT_FALSE(cache.setNewValueToParm(8000, 4000, true));
    EXPECT_EQ("1x1", str(block.valueString()));
}
