// mpeg4bits_test.cpp - the suites of bit streams of MPEG-4: their data and their calls.

#include "inifile.h"
#include "kmvc.h"
#include "mpeg4spec.h"
#include "seenbits.h"

namespace {

using suite::Cells;
using suite::Expected;

const Cells counts = {"4", "8", "16", "32", "64"};
const Cells bothCodes = {"vlc", "rvlc"}, scans = {"none", "zigzag", "horizontal", "vertical"};

enum { Coeffs, Stream, Matrix, Spec }; // the blocks of bit streams, in the order in which they are made
const std::vector<int> sizes = {128, 1024}, reconSizes = {128, 1024, 64, specBytes};

// ---- what is registered ---------------------------------------------------------------

Expected coded(char const *test, char const *function, Cells const &codes, Cells const &orders, int written) {
    return Expected(test, function, "e", 64)
        .consumes()
        .parm("countNonZero", counts)
        .parm("rvlcFlag", codes)
        .parm("scan", orders)
        .writes({written});
}

Expected vlc(char const *function, int written) {
    return coded("Timm4EncVlc", function, bothCodes, scans, written).blocks(sizes);
}

Expected backward(char const *function) {
    return coded("Timm4EncVlc", function, {"rvlc"}, {"none"}, Coeffs).blocks(sizes);
}

const std::vector<Expected> vlcTests = {
    vlc("keliEncodeCoeffsIntra_MPEG4_16s1u", Stream), vlc("keliEncodeCoeffsInter_MPEG4_16s1u", Stream),
    vlc("keliDecodeCoeffsIntra_MPEG4_1u16s", Coeffs), backward("keliDecodeCoeffsIntraRVLCBack_MPEG4_1u16s"),
    vlc("keliDecodeCoeffsInter_MPEG4_1u16s", Coeffs), backward("keliDecodeCoeffsInterRVLCBack_MPEG4_1u16s"),
};

char const *const recon = "keliReconstructCoeffsInter_MPEG4_1u16s";
const std::vector<Expected> reconTests = {
    coded("Timvcmp4_Recon", recon, bothCodes, scans, Coeffs).blocks(reconSizes)};

Expected dc(char const *function) {
    return Expected("Timm4EncVlcDC", function, " ", 1)
        .consumes()
        .parm("blockType", {"luma", "chroma"})
        .blocks({1024});
}

const std::vector<Expected> dcTests = {dc("keliEncodeDCIntra_MPEG4_16s1u").writes({0}),
                                       dc("keliDecodeDCIntra_MPEG4_1u16s")};

} // namespace

SUITE_TEST(Mpeg4Recon, "mpeg4recon.cpp", reconTests);
SUITE_TEST(Mpeg4Vlc, "mpeg4vlc.cpp", vlcTests);
SUITE_TEST(Mpeg4VlcDC, "mpeg4vlcdc.cpp", dcTests);

// ---- the spies ----------------------------------------------------------------------

SPY_SPEC(keliQuantInvInterGetSize_MPEG4, keliQuantInvInterInit_MPEG4)

// clang-format off

KelStatus keliEncodeCoeffsIntra_MPEG4_16s1u(const Kel16s *c, Kel8u **pp, int *o, int n, int rvlc, int dc, int scan) {
    return SPY_BITS(keliEncodeCoeffsIntra_MPEG4_16s1u, c, pp, o, n, rvlc, dc, scan);
}
KelStatus keliEncodeCoeffsInter_MPEG4_16s1u(const Kel16s *c, Kel8u **pp, int *o, int n, int rvlc, int scan) {
    return SPY_BITS(keliEncodeCoeffsInter_MPEG4_16s1u, c, pp, o, n, rvlc, scan);
}
KelStatus keliDecodeCoeffsIntra_MPEG4_1u16s(Kel8u **pp, int *o, Kel16s *c, int *last, int rvlc, int dc, int scan) {
    return SPY_BITS(keliDecodeCoeffsIntra_MPEG4_1u16s, pp, o, c, last, rvlc, dc, scan);
}
KelStatus keliDecodeCoeffsInter_MPEG4_1u16s(Kel8u **pp, int *o, Kel16s *c, int *last, int rvlc, int scan) {
    return SPY_BITS(keliDecodeCoeffsInter_MPEG4_1u16s, pp, o, c, last, rvlc, scan);
}
KelStatus keliDecodeCoeffsIntraRVLCBack_MPEG4_1u16s(Kel8u **pp, int *o, Kel16s *c, int *last, int dc) {
    return SPY_BITS(keliDecodeCoeffsIntraRVLCBack_MPEG4_1u16s, pp, o, c, last, dc);
}
KelStatus keliDecodeCoeffsInterRVLCBack_MPEG4_1u16s(Kel8u **pp, int *o, Kel16s *c, int *last) {
    return SPY_BITS(keliDecodeCoeffsInterRVLCBack_MPEG4_1u16s, pp, o, c, last);
}
KelStatus keliReconstructCoeffsInter_MPEG4_1u16s(Kel8u **pp, int *o, Kel16s *c, int *last, int rvlc, int scan, const KeliQuantSpec_MPEG4 *spec, int QP) {
    return SPY_BITS(keliReconstructCoeffsInter_MPEG4_1u16s, pp, o, c, last, rvlc, scan, spec, QP);
}
KelStatus keliEncodeDCIntra_MPEG4_16s1u(Kel16s dc, Kel8u **pp, int *o, int type) {
    return SPY_BITS(keliEncodeDCIntra_MPEG4_16s1u, dc, pp, o, type);
}
KelStatus keliDecodeDCIntra_MPEG4_1u16s(Kel8u **pp, int *o, Kel16s *dc, int type) {
    return SPY_BITS(keliDecodeDCIntra_MPEG4_1u16s, pp, o, dc, type);
}

// clang-format on

namespace {

class Mpeg4Bits : public BitStreamSuite {};

const SeenPosition atStart = {Stream, 1024, 0};
const Arg stream = own(), bit = own(), coeffs = block(Coeffs), last = own();
const int numbers[] = {4, 8, 16, 32, 64}, scanCodes[] = {-1, 0, 2, 1};

// Calls of the 40 sets by countNonZero, rvlcFlag and scan.
template <class Args>
std::vector<std::vector<Arg>> argsOfSets(Args args) {
    std::vector<std::vector<Arg>> sets;
    for (int n : numbers) {
        for (int rvlc : {0, 1}) {
            for (int scan : scanCodes) sets.push_back(args(value(n), value(rvlc), value(scan)));
        }
    }
    return sets;
}

Kel16s *coeffsOf(std::vector<suite::Block> const &blocks) {
    return reinterpret_cast<Kel16s *>(blocks[Coeffs].data);
}

} // namespace

// ---- bit streams ------------------------------------------------------------------------

TEST_F(Mpeg4Bits, CodersTakeCountCodesAndScan) {
    std::vector<ExpectedCall> intra, inter;
    for (std::vector<Arg> const &args : argsOfSets([](Arg n, Arg rvlc, Arg scan) {
             return std::vector<Arg>{coeffs, stream, bit, n, rvlc, value(0), scan};
         }))
        intra.push_back({args, atStart});
    for (std::vector<Arg> const &args : argsOfSets(
             [](Arg n, Arg rvlc, Arg scan) { return std::vector<Arg>{coeffs, stream, bit, n, rvlc, scan}; }))
        inter.push_back({args, atStart});
    expectCalls("keliEncodeCoeffsIntra_MPEG4_16s1u", intra, sizes);
    expectCalls("keliEncodeCoeffsInter_MPEG4_16s1u", inter, sizes);
}

TEST_F(Mpeg4Bits, DecodersStartAtTheBeginningOfTheStream) {
    std::vector<ExpectedCall> intra, inter;
    for (std::vector<Arg> const &args : argsOfSets([](Arg, Arg rvlc, Arg scan) {
             return std::vector<Arg>{stream, bit, coeffs, last, rvlc, value(0), scan};
         }))
        intra.push_back({args, atStart});
    for (std::vector<Arg> const &args : argsOfSets(
             [](Arg, Arg rvlc, Arg scan) { return std::vector<Arg>{stream, bit, coeffs, last, rvlc, scan}; }))
        inter.push_back({args, atStart});
    expectCalls("keliDecodeCoeffsIntra_MPEG4_1u16s", intra, sizes);
    expectCalls("keliDecodeCoeffsInter_MPEG4_1u16s", inter, sizes);
}

TEST_F(Mpeg4Bits, ReconstructionTakesCodesScanAndAQuantiserOfTwo) {
    std::vector<ExpectedCall> expected;
    for (std::vector<Arg> const &args : argsOfSets([](Arg, Arg rvlc, Arg scan) {
             return std::vector<Arg>{stream, bit, coeffs, last, rvlc, scan, block(Spec), value(2)};
         }))
        expected.push_back({args, atStart});
    g_inits.clear();
    expectCalls(recon, expected, reconSizes);
    ASSERT_EQ(g_inits.size(), 40u);
    for (SeenInit const &init : g_inits) {
        EXPECT_EQ(init.function, "keliQuantInvInterInit_MPEG4");
        EXPECT_EQ(init.block, Matrix);
        EXPECT_EQ(init.bits, 8);
    }
}

TEST_F(Mpeg4Bits, WeightsOfReconstructionAreRandom) {
    suite::Sets sets(suite::findTest(recon));
    ASSERT_TRUE(sets.next());
    const std::vector<suite::Block> blocks = suite::Sets::blocks();
    kmVector::m_seed = 7;
    kmVector matrix(8);
    ASSERT_TRUE(matrix.createVectorExt(64, 0, SetRandom, 2.0, 127.0));
    EXPECT_EQ(memcmp(blocks[Matrix].data, matrix.m_data, 64), 0);
}

namespace {

// Bits of the block in hand that the encoder writes, alone.
int codedBits(bool intra, Kel16s const *coeffs, int count) {
    Kel8u room[256] = {};
    Kel8u *p = room;
    int offset = 0;
    EXPECT_EQ(kelStsNoErr, intra ? keliEncodeCoeffsIntra_MPEG4_16s1u(coeffs, &p, &offset, count, 1, 0, -1)
                                 : keliEncodeCoeffsInter_MPEG4_16s1u(coeffs, &p, &offset, count, 1, -1));
    return static_cast<int>(p - room) * 8 + offset;
}

// Where the call of the set in hand finds its stream.
SeenPosition positionOfCall(suite::Sets &sets) {
    g_positions.clear();
    EXPECT_EQ(sets.call(), 0);
    EXPECT_EQ(g_positions.size(), 1u);
    return g_positions.empty() ? SeenPosition{-1, 0, 0} : g_positions[0];
}

} // namespace

TEST_F(Mpeg4Bits, BackwardDecodersStartWithTheLastBitOfTheSecondOfTwoBlocks) {
    for (bool intra : {true, false}) {
        suite::Sets sets(suite::findTest(intra ? "keliDecodeCoeffsIntraRVLCBack_MPEG4_1u16s"
                                               : "keliDecodeCoeffsInterRVLCBack_MPEG4_1u16s"));
        for (int n : numbers) {
            ASSERT_TRUE(sets.next());
            std::vector<suite::Block> blocks = suite::Sets::blocks();
            const int bits = codedBits(intra, coeffsOf(blocks), n), end = 2 * bits - 1;
            std::vector<Kel8u> written(blocks[Stream].data, blocks[Stream].data + 1024);
            EXPECT_EQ(positionOfCall(sets), (SeenPosition{Stream, 1024 - end / 8, end % 8})) << n;
            EXPECT_EQ(memcmp(written.data(), blocks[Stream].data, 1024), 0);
        }
        EXPECT_FALSE(sets.next());
    }
}

TEST_F(Mpeg4Bits, BackwardDecodersTakeNoScan) {
    g_seen.clear();
    run("keliDecodeCoeffsIntraRVLCBack_MPEG4_1u16s");
    run("keliDecodeCoeffsInterRVLCBack_MPEG4_1u16s");
    int intra = 0, inter = 0;
    for (SeenCall const &call : g_seen) {
        if (call.function == "keliDecodeCoeffsIntraRVLCBack_MPEG4_1u16s") {
            ++intra;
            expectArg(call.args[2], coeffs, sizes);
            expectArg(call.args[4], value(0), sizes);
        }
        if (call.function == "keliDecodeCoeffsInterRVLCBack_MPEG4_1u16s") {
            ++inter;
            EXPECT_EQ(call.args.size(), 4u);
            expectArg(call.args[2], coeffs, sizes);
        }
    }
    EXPECT_EQ(intra, 10);
    EXPECT_EQ(inter, 10);
}

TEST_F(Mpeg4Bits, BlocksHaveAsManyCoefficientsAsTheCountSays) {
    std::vector<Expected> all = vlcTests;
    all.insert(all.end(), reconTests.begin(), reconTests.end());
    for (Expected const &expected : all) {
        rkTest *test = suite::findTest(expected.m_function);
        suite::Sets sets(test);
        std::set<int> seen;
        while (sets.next()) {
            auto *parm = static_cast<rkIterator<int> *>(*test->m_parms.begin());
            SCOPED_TRACE(expected.m_function + ", " + std::to_string(parm->value()));
            expectCoefficients(coeffsOf(suite::Sets::blocks()), parm->value());
            seen.insert(parm->value());
        }
        EXPECT_EQ(seen, std::set<int>(numbers, numbers + 5));
    }
}

TEST_F(Mpeg4Bits, DecodersMeetTheirOwnBlock) {
    for (Expected const &expected : vlcTests) {
        if (expected.m_function.find("Decode") == std::string::npos) continue;
        suite::Sets sets(suite::findTest(expected.m_function));
        int count = 0;
        for (; sets.next(); ++count) {
            Kel16s *block = coeffsOf(suite::Sets::blocks());
            const std::vector<Kel16s> coded(block, block + 64);
            memset(block, 0, 128);
            ASSERT_EQ(sets.call(), 0);
            EXPECT_EQ(coded, std::vector<Kel16s>(block, block + 64)) << expected.m_function << ", " << count;
        }
        EXPECT_EQ(count, expected.m_function.find("Back") == std::string::npos ? 40 : 5);
    }
}

TEST_F(Mpeg4Bits, ReconstructionMeetsItsOwnBlockAndDequantisesIt) {
    suite::Sets sets(suite::findTest(recon));
    int count = 0;
    for (; sets.next(); ++count) {
        std::vector<suite::Block> blocks = suite::Sets::blocks();
        std::vector<Kel16s> expected(coeffsOf(blocks), coeffsOf(blocks) + 64);
        auto spec = reinterpret_cast<KeliQuantSpec_MPEG4 *>(blocks[Spec].data);
        ASSERT_EQ(keliQuantInvInter_MPEG4_16s_C1I(expected.data(), 63, spec, 2), 0);
        memset(blocks[Coeffs].data, 0, 128);
        ASSERT_EQ(sets.call(), 0);
        EXPECT_EQ(memcmp(expected.data(), blocks[Coeffs].data, 128), 0) << count;
    }
    EXPECT_EQ(count, 40);
}

TEST_F(Mpeg4Bits, DcIsTheLevelTwoAtTheBeginningOfTheStream) {
    const SeenPosition start = {0, 1024, 0};
    expectCalls("keliEncodeDCIntra_MPEG4_16s1u",
                {{{value(2), stream, bit, value(0)}, start}, {{value(2), stream, bit, value(1)}, start}},
                {1024});
    expectCalls("keliDecodeDCIntra_MPEG4_1u16s",
                {{{stream, bit, own(), value(0)}, start}, {{stream, bit, own(), value(1)}, start}}, {1024});
    int prepared = 0;
    for (SeenCall const &call : g_seen) {
        if (call.function != "keliEncodeDCIntra_MPEG4_16s1u") continue;
        expectArgs(call, {value(2), stream, bit, value(prepared++)}, {1024});
    }
    EXPECT_EQ(prepared, 2) << "what the decoder meets, once a set";
}

// ---- failures -----------------------------------------------------------------------------

namespace {

struct Preparation {
    char const *function, *prepares;
};

const Preparation preparations[] = {
    {"keliDecodeCoeffsIntra_MPEG4_1u16s", "keliEncodeCoeffsIntra_MPEG4_16s1u"},
    {"keliDecodeCoeffsIntraRVLCBack_MPEG4_1u16s", "keliEncodeCoeffsIntra_MPEG4_16s1u"},
    {"keliDecodeCoeffsInter_MPEG4_1u16s", "keliEncodeCoeffsInter_MPEG4_16s1u"},
    {"keliDecodeCoeffsInterRVLCBack_MPEG4_1u16s", "keliEncodeCoeffsInter_MPEG4_16s1u"},
    {"keliDecodeDCIntra_MPEG4_1u16s", "keliEncodeDCIntra_MPEG4_16s1u"},
    {recon, "keliEncodeCoeffsInter_MPEG4_16s1u"},
    {recon, "keliQuantInvInterGetSize_MPEG4"},
    {recon, "keliQuantInvInterInit_MPEG4"},
};

} // namespace

TEST_F(Mpeg4Bits, AnErrorOfAPreparingCallRefusesTheSet) {
    g_answer = kelStsRangeErr;
    for (Preparation const &p : preparations) {
        g_answered = p.prepares;
        suite::Outcome outcome = run(p.function);
        EXPECT_TRUE(rkIsError(outcome.result)) << p.function << ", " << p.prepares;
        EXPECT_TRUE(outcome.rows.empty()) << p.function << ", " << p.prepares;
        EXPECT_NE(outcome.log.find("--KEL ERROR. status = -5"), std::string::npos) << outcome.log;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << p.function << ", " << p.prepares;
    }
}

TEST_F(Mpeg4Bits, AWarningOfAPreparingCallLetsTheSetBe) {
    g_answer = kelStsNoOperation;
    g_answered = "keliEncodeCoeffsInter_MPEG4_16s1u";
    g_seen.clear();
    suite::Outcome outcome = run(recon);
    EXPECT_NE(outcome.log.find("--KEL WARNING."), std::string::npos) << outcome.log;
    ASSERT_FALSE(g_seen.empty());
    EXPECT_EQ(g_seen[0].function, recon);
}

// In front of an empty stream there is nothing to read.
TEST_F(Mpeg4Bits, BackwardDecodersHaveNoSetWithoutALevel) {
    for (char const *function :
         {"keliDecodeCoeffsIntraRVLCBack_MPEG4_1u16s", "keliDecodeCoeffsInterRVLCBack_MPEG4_1u16s"}) {
        IniFile file("[" + std::string(function) + "]\ncountNonZero = 0\n");
        g_seen.clear();
        suite::Outcome outcome = run(function);
        EXPECT_TRUE(rkIsError(outcome.result)) << function;
        for (SeenCall const &call : g_seen) EXPECT_NE(call.function, function);
        EXPECT_TRUE(suite::Sets::blocks().empty()) << function;
    }
}

TEST_F(Mpeg4Bits, MoreLevelsThanABlockHasAreAnError) {
    std::vector<Expected> all = vlcTests;
    all.insert(all.end(), reconTests.begin(), reconTests.end());
    for (Expected const &expected : all) {
        for (char const *count : {"65", "5000", "-1"}) {
            IniFile file("[" + expected.m_function + "]\ncountNonZero = " + count + "\n");
            EXPECT_TRUE(rkIsError(run(expected.m_function).result)) << expected.m_function << ", " << count;
        }
    }
}

TEST_F(Mpeg4Bits, WithoutMemoryThereIsNoSet) {
    NoSecondBlock full;
    for (char const *function :
         {"keliDecodeCoeffsIntra_MPEG4_1u16s", "keliEncodeCoeffsInter_MPEG4_16s1u", recon}) {
        suite::Outcome outcome = run(function);
        EXPECT_TRUE(rkIsError(outcome.result)) << function;
        EXPECT_TRUE(outcome.rows.empty()) << function;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << function;
    }
}
