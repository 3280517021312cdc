// h26xbits_test.cpp - the suites of quantisation and bit streams of H.261 and H.263: their data and their
// calls.

#include "kmvc.h"
#include "seenbits.h"

namespace {

using suite::Cells;
using suite::Expected;

const Cells counts261 = {"4", "8", "16", "32", "64"}, counts263 = {"4", "8", "16", "32", "63"};
const Cells bothScans = {"none", "zigzag"}, noScan = {"none"};
const Cells advanced = {"-", "advanced"}, modified = {"-", "modQuant"};

enum { Coeffs, Stream }; // the blocks, in the order in which they are made
const std::vector<int> sizes = {128, 1024};

// ---- what is registered ---------------------------------------------------------------

Expected h261(char const *function, Cells const &scans, int written) {
    return Expected("Timvch261_VLC", function, "e", 64)
        .consumes()
        .parm("countNonZero", counts261)
        .parm("scan", scans)
        .blocks(sizes)
        .writes({written});
}

const std::vector<Expected> h261Tests = {
    h261("keliDecodeCoeffsIntra_H261_1u16s", bothScans, Coeffs),
    h261("keliDecodeCoeffsInter_H261_1u16s", bothScans, Coeffs),
    h261("keliReconstructCoeffsIntra_H261_1u16s", noScan, Coeffs),
    h261("keliReconstructCoeffsInter_H261_1u16s", noScan, Coeffs),
    h261("keliEncodeCoeffsIntra_H261_16s1u", bothScans, Stream),
    h261("keliEncodeCoeffsInter_H261_16s1u", bothScans, Stream),
};

Expected h263(char const *function, Cells const &advFlags, Cells const &scans, int written) {
    return Expected("Timvch263_VLCAC", function, "e", 64)
        .consumes()
        .parm("countNonZero", counts263)
        .parm("advIntraFlag", advFlags)
        .parm("modQuantFlag", modified)
        .parm("scan", scans)
        .blocks(sizes)
        .writes({written});
}

const std::vector<Expected> h263Tests = {
    h263("keliEncodeCoeffsIntra_H263_16s1u", advanced, bothScans, Stream),
    h263("keliEncodeCoeffsInter_H263_16s1u", {"advanced"}, bothScans, Stream),
    h263("keliDecodeCoeffsIntra_H263_1u16s", advanced, bothScans, Coeffs),
    h263("keliDecodeCoeffsInter_H263_1u16s", {"advanced"}, bothScans, Coeffs),
    h263("keliReconstructCoeffsIntra_H263_1u16s", advanced, bothScans, Coeffs),
    h263("keliReconstructCoeffsInter_H263_1u16s", {"advanced"}, noScan, Coeffs),
};

Expected dc(char const *function) {
    return Expected("Timvch263_VLCDC", function, " ", 1)
        .consumes()
        .parm("blockType", {"luma", "chroma"})
        .blocks({1024});
}

const std::vector<Expected> dcTests = {dc("keliDecodeDCIntra_H263_1u16s"),
                                       dc("keliEncodeDCIntra_H263_16s1u").writes({0})};

Expected quant(char const *function, Cells const &lasts, Cells const &advFlags) {
    return Expected("Timvch263_Quant", function, "e", 64)
        .parm("indxLastNonZero", lasts)
        .parm("advIntraFlag", advFlags)
        .parm("modQuantFlag", modified)
        .blocks({128})
        .updates({0});
}

const Cells lasts = {"3", "7", "15", "31"};
const std::vector<Expected> quantTests = {
    quant("keliQuantInvIntra_H263_16s_C1I", lasts, advanced),
    quant("keliQuantInvInter_H263_16s_C1I", lasts, {"-"}),
    quant("keliQuantIntra_H263_16s_C1I", {"0"}, advanced),
    quant("keliQuantInter_H263_16s_C1I", {"0"}, {"-"}),
};

} // namespace

SUITE_TEST(H261Vlc, "h261vlc.cpp", h261Tests);
SUITE_TEST(H263Vlcac, "h263vlcac.cpp", h263Tests);
SUITE_TEST(H263Vlcdc, "h263vlcdc.cpp", dcTests);
SUITE_TEST(H263Quant, "h263quant.cpp", quantTests);

// ---- the spies ----------------------------------------------------------------------

// clang-format off

#define SPY_ENCODE_261(name) \
    KelStatus name(const Kel16s *c, Kel8u **pp, int *o, int n, int scan) { return SPY_BITS(name, c, pp, o, n, scan); }
#define SPY_DECODE_261(name) \
    KelStatus name(Kel8u **pp, int *o, Kel16s *c, int *last, int n) { return SPY_BITS(name, pp, o, c, last, n); }

SPY_ENCODE_261(keliEncodeCoeffsIntra_H261_16s1u)
SPY_ENCODE_261(keliEncodeCoeffsInter_H261_16s1u)
SPY_DECODE_261(keliDecodeCoeffsIntra_H261_1u16s)
SPY_DECODE_261(keliDecodeCoeffsInter_H261_1u16s)
SPY_DECODE_261(keliReconstructCoeffsIntra_H261_1u16s)
SPY_DECODE_261(keliReconstructCoeffsInter_H261_1u16s)

KelStatus keliEncodeDCIntra_H263_16s1u(Kel16s dc, Kel8u **pp, int *o) {
    return SPY_BITS(keliEncodeDCIntra_H263_16s1u, dc, pp, o);
}
KelStatus keliDecodeDCIntra_H263_1u16s(Kel8u **pp, int *o, Kel16s *dc) {
    return SPY_BITS(keliDecodeDCIntra_H263_1u16s, pp, o, dc);
}
KelStatus keliEncodeCoeffsIntra_H263_16s1u(const Kel16s *c, Kel8u **pp, int *o, int n, int adv, int mod, int scan) {
    return SPY_BITS(keliEncodeCoeffsIntra_H263_16s1u, c, pp, o, n, adv, mod, scan);
}
KelStatus keliEncodeCoeffsInter_H263_16s1u(const Kel16s *c, Kel8u **pp, int *o, int n, int mod, int scan) {
    return SPY_BITS(keliEncodeCoeffsInter_H263_16s1u, c, pp, o, n, mod, scan);
}
KelStatus keliDecodeCoeffsIntra_H263_1u16s(Kel8u **pp, int *o, Kel16s *c, int *last, int adv, int mod, int scan) {
    return SPY_BITS(keliDecodeCoeffsIntra_H263_1u16s, pp, o, c, last, adv, mod, scan);
}
KelStatus keliDecodeCoeffsInter_H263_1u16s(Kel8u **pp, int *o, Kel16s *c, int *last, int mod, int scan) {
    return SPY_BITS(keliDecodeCoeffsInter_H263_1u16s, pp, o, c, last, mod, scan);
}
KelStatus keliReconstructCoeffsIntra_H263_1u16s(Kel8u **pp, int *o, Kel16s *c, int *last, int cbp, int QP, int adv, int scan, int mod) {
    return SPY_BITS(keliReconstructCoeffsIntra_H263_1u16s, pp, o, c, last, cbp, QP, adv, scan, mod);
}
KelStatus keliReconstructCoeffsInter_H263_1u16s(Kel8u **pp, int *o, Kel16s *c, int *last, int QP, int mod) {
    return SPY_BITS(keliReconstructCoeffsInter_H263_1u16s, pp, o, c, last, QP, mod);
}
KelStatus keliQuantInvIntra_H263_16s_C1I(Kel16s *c, int last, int QP, int adv, int mod) {
    return SPY(keliQuantInvIntra_H263_16s_C1I, c, last, QP, adv, mod);
}
KelStatus keliQuantInvInter_H263_16s_C1I(Kel16s *c, int last, int QP, int mod) {
    return SPY(keliQuantInvInter_H263_16s_C1I, c, last, QP, mod);
}
KelStatus keliQuantIntra_H263_16s_C1I(Kel16s *c, int QP, int *count, int adv, int mod) {
    return SPY(keliQuantIntra_H263_16s_C1I, c, QP, count, adv, mod);
}
KelStatus keliQuantInter_H263_16s_C1I(Kel16s *c, int QP, int *count, int mod) {
    return SPY(keliQuantInter_H263_16s_C1I, c, QP, count, mod);
}

// clang-format on

namespace {

// ---- calls and positions ------------------------------------------------------------------

class H26xBits : public BitStreamSuite {};

const SeenPosition atStart = {Stream, 1024, 0}, behindDc = {Stream, 1023, 0};
const Arg stream = own(), bit = own(), coeffs = block(Coeffs), last = own();

const int numbers261[] = {4, 8, 16, 32, 64}, numbers263[] = {4, 8, 16, 32, 63};

Kel16s *coeffsOf(std::vector<suite::Block> const &blocks) {
    return reinterpret_cast<Kel16s *>(blocks[Coeffs].data);
}

} // namespace

// ---- the calls of H.261 ---------------------------------------------------------------

TEST_F(H26xBits, H261CodersTakeTheirCountAndScan) {
    for (char const *function : {"keliEncodeCoeffsIntra_H261_16s1u", "keliEncodeCoeffsInter_H261_16s1u"}) {
        std::vector<ExpectedCall> expected;
        for (int n : numbers261) {
            for (int scan : {-1, 0})
                expected.push_back({{coeffs, stream, bit, value(n), value(scan)}, atStart});
        }
        expectCalls(function, expected, sizes);
    }
}

TEST_F(H26xBits, H261DecodersStartAtTheBeginningOfTheStream) {
    for (char const *function : {"keliDecodeCoeffsIntra_H261_1u16s", "keliDecodeCoeffsInter_H261_1u16s"}) {
        std::vector<ExpectedCall> expected;
        for (int set = 0; set < 10; ++set)
            expected.push_back({{stream, bit, coeffs, last, value(set % 2 - 1)}, atStart});
        expectCalls(function, expected, sizes);
    }
}

TEST_F(H26xBits, H261ReconstructionTakesAQuantOfTwo) {
    for (char const *function :
         {"keliReconstructCoeffsIntra_H261_1u16s", "keliReconstructCoeffsInter_H261_1u16s"})
        expectCalls(function, std::vector<ExpectedCall>(5, {{stream, bit, coeffs, last, value(2)}, atStart}),
                    sizes);
}

// ---- the calls of H.263 ---------------------------------------------------------------

TEST_F(H26xBits, H263IntraCoderTakesCountFlagsAndScan) {
    std::vector<ExpectedCall> expected;
    for (int n : numbers263) {
        for (int set = 0; set < 8; ++set) {
            const Arg adv = value(set / 4), mod = value(set / 2 % 2), scan = value(set % 2 - 1);
            expected.push_back({{coeffs, stream, bit, value(n), adv, mod, scan}, atStart});
        }
    }
    expectCalls("keliEncodeCoeffsIntra_H263_16s1u", expected, sizes);
}

TEST_F(H26xBits, H263InterCoderTakesNoFlagOfAdvancedIntraCoding) {
    std::vector<ExpectedCall> expected;
    for (int n : numbers263) {
        for (int set = 0; set < 4; ++set)
            expected.push_back(
                {{coeffs, stream, bit, value(n), value(set / 2), value(set % 2 - 1)}, atStart});
    }
    expectCalls("keliEncodeCoeffsInter_H263_16s1u", expected, sizes);
}

TEST_F(H26xBits, H263IntraDecoderStartsBehindDc) {
    std::vector<ExpectedCall> expected;
    for (int set = 0; set < 40; ++set) {
        const Arg adv = value(set / 4 % 2), mod = value(set / 2 % 2), scan = value(set % 2 - 1);
        expected.push_back({{stream, bit, coeffs, last, adv, mod, scan}, behindDc});
    }
    expectCalls("keliDecodeCoeffsIntra_H263_1u16s", expected, sizes);
}

TEST_F(H26xBits, H263InterDecoderStartsAtTheBeginningOfTheStream) {
    std::vector<ExpectedCall> expected;
    for (int set = 0; set < 20; ++set)
        expected.push_back({{stream, bit, coeffs, last, value(set / 2 % 2), value(set % 2 - 1)}, atStart});
    expectCalls("keliDecodeCoeffsInter_H263_1u16s", expected, sizes);
}

TEST_F(H26xBits, H263IntraReconstructionStartsWithDcUnlessThatIsCodedWithTheOthers) {
    std::vector<ExpectedCall> expected;
    for (int set = 0; set < 40; ++set) {
        const int adv = set / 4 % 2;
        const Arg mod = value(set / 2 % 2), scan = value(set % 2 - 1);
        expected.push_back({{stream, bit, coeffs, last, value(1), value(2), value(adv), scan, mod},
                            adv ? behindDc : atStart});
    }
    expectCalls("keliReconstructCoeffsIntra_H263_1u16s", expected, sizes);
}

TEST_F(H26xBits, H263InterReconstructionTakesQuantAndFlag) {
    std::vector<ExpectedCall> expected;
    for (int set = 0; set < 10; ++set)
        expected.push_back({{stream, bit, coeffs, last, value(2), value(set % 2)}, atStart});
    expectCalls("keliReconstructCoeffsInter_H263_1u16s", expected, sizes);
}

TEST_F(H26xBits, DcIsTheLevelTwoAtTheBeginningOfTheStream) {
    const SeenPosition start = {0, 1024, 0};
    expectCalls("keliDecodeDCIntra_H263_1u16s", std::vector<ExpectedCall>(2, {{stream, bit, own()}, start}),
                {1024});
    ASSERT_FALSE(g_seen.empty());
    EXPECT_EQ(g_seen[0].function, "keliEncodeDCIntra_H263_16s1u") << "what the decoder meets";
    EXPECT_EQ(g_seen[0].args[0].value, 2);
    g_seen.clear();
    g_positions.clear();
    run("keliEncodeDCIntra_H263_16s1u");
    ASSERT_EQ(g_seen.size(), 4u) << "a warm-up and a call for both sets";
    for (size_t i = 0; i < 4; ++i) {
        expectArgs(g_seen[i], {value(2), stream, bit}, {1024});
        EXPECT_EQ(g_positions[i], start);
    }
}

// ---- the calls of the quantisers --------------------------------------------------------

TEST_F(H26xBits, InverseQuantisersTakeTheirLastIndex) {
    suite::Outcome outcome;
    std::vector<SeenCall> intra = callsOf(outcome, "keliQuantInvIntra_H263_16s_C1I");
    std::vector<SeenCall> inter = callsOf(outcome, "keliQuantInvInter_H263_16s_C1I");
    ASSERT_EQ(intra.size(), 16u);
    ASSERT_EQ(inter.size(), 8u);
    const int numbers[] = {3, 7, 15, 31};
    for (int i = 0; i < 16; ++i)
        expectArgs(intra[i], {block(0), value(numbers[i / 4]), value(2), value(i / 2 % 2), value(i % 2)},
                   {128});
    for (int i = 0; i < 8; ++i)
        expectArgs(inter[i], {block(0), value(numbers[i / 2]), value(2), value(i % 2)}, {128});
}

TEST_F(H26xBits, QuantisersCountTheirLevels) {
    suite::Outcome outcome;
    std::vector<SeenCall> intra = callsOf(outcome, "keliQuantIntra_H263_16s_C1I");
    std::vector<SeenCall> inter = callsOf(outcome, "keliQuantInter_H263_16s_C1I");
    ASSERT_EQ(intra.size(), 4u);
    ASSERT_EQ(inter.size(), 2u);
    for (int i = 0; i < 4; ++i)
        expectArgs(intra[i], {block(0), value(2), own(), value(i / 2), value(i % 2)}, {128});
    for (int i = 0; i < 2; ++i) expectArgs(inter[i], {block(0), value(2), own(), value(i)}, {128});
}

TEST_F(H26xBits, QuantisersWorkOnRandomValuesFromTheSeedOn) {
    for (Expected const &expected : quantTests) {
        suite::Sets sets(suite::findTest(expected.m_function));
        ASSERT_TRUE(sets.next());
        expectRandom(suite::Sets::blocks(), {{16 | kmTypeSigned, 64, -300, 300}});
    }
}

// ---- the data of bit streams --------------------------------------------------------------

// H.261 counts DC; in H.263 it stands outside of the coded run, so that its counts end at 63.
TEST_F(H26xBits, BlocksHaveAsManyCoefficientsAsTheCountSays) {
    for (std::vector<Expected> const *tests : {&h261Tests, &h263Tests}) {
        for (Expected const &expected : *tests) {
            suite::Sets sets(suite::findTest(expected.m_function));
            std::set<int> counts;
            while (sets.next()) {
                std::vector<suite::Block> blocks = suite::Sets::blocks();
                ASSERT_EQ(blocks.size(), 2u);
                rkTest *test = suite::findTest(expected.m_function);
                auto *parm = static_cast<rkIterator<int> *>(*test->m_parms.begin());
                SCOPED_TRACE(expected.m_function + ", " + std::to_string(parm->value()));
                expectCoefficients(coeffsOf(blocks), parm->value());
                counts.insert(parm->value());
            }
            EXPECT_EQ(*counts.rbegin(), tests == &h261Tests ? 64 : 63);
            EXPECT_EQ(counts.size(), 5u);
        }
    }
}

namespace {

// The decoded block is the one that was coded, but for a DC that has no code or is not decoded.
void expectBlocksComeBack(char const *function, bool dcStays) {
    suite::Sets sets(suite::findTest(function));
    int count = 0;
    for (; sets.next(); ++count) {
        Kel16s *block = coeffsOf(suite::Sets::blocks());
        const std::vector<Kel16s> coded(block, block + 64);
        memset(block, 0, 128);
        ASSERT_EQ(sets.call(), 0);
        for (int i = dcStays ? 0 : 1; i < 64; ++i) EXPECT_EQ(block[i], coded[i]) << function << ", " << i;
    }
    EXPECT_GE(count, 10);
}

} // namespace

TEST_F(H26xBits, DecodersMeetTheirOwnBlock) {
    expectBlocksComeBack("keliDecodeCoeffsIntra_H261_1u16s", false);
    expectBlocksComeBack("keliDecodeCoeffsInter_H261_1u16s", true);
    expectBlocksComeBack("keliDecodeCoeffsIntra_H263_1u16s", false);
    expectBlocksComeBack("keliDecodeCoeffsInter_H263_1u16s", true);
}

TEST_F(H26xBits, H263IntraStreamsBeginWithTheBlocksDc) {
    for (char const *function :
         {"keliDecodeCoeffsIntra_H263_1u16s", "keliReconstructCoeffsIntra_H263_1u16s"}) {
        suite::Sets sets(suite::findTest(function));
        int count = 0;
        for (; sets.next(); ++count) {
            std::vector<suite::Block> blocks = suite::Sets::blocks();
            const int dc = coeffsOf(blocks)[0];
            EXPECT_EQ(blocks[Stream].data[0], dc < 1 ? 1 : dc) << function;
        }
        EXPECT_EQ(count, 40) << function;
    }
}

TEST_F(H26xBits, InterStreamsHaveNoDc) {
    g_seen.clear();
    run("keliDecodeCoeffsInter_H263_1u16s");
    run("keliReconstructCoeffsInter_H263_1u16s");
    EXPECT_FALSE(g_seen.empty());
    for (SeenCall const &call : g_seen) EXPECT_NE(call.function, "keliEncodeDCIntra_H263_16s1u");
}

// ---- failures -----------------------------------------------------------------------------

namespace {

struct Preparation {
    char const *function, *prepares;
};

const Preparation preparations[] = {
    {"keliDecodeCoeffsIntra_H261_1u16s", "keliEncodeCoeffsIntra_H261_16s1u"},
    {"keliDecodeCoeffsInter_H261_1u16s", "keliEncodeCoeffsInter_H261_16s1u"},
    {"keliReconstructCoeffsIntra_H261_1u16s", "keliEncodeCoeffsIntra_H261_16s1u"},
    {"keliReconstructCoeffsInter_H261_1u16s", "keliEncodeCoeffsInter_H261_16s1u"},
    {"keliDecodeCoeffsIntra_H263_1u16s", "keliEncodeCoeffsIntra_H263_16s1u"},
    {"keliDecodeCoeffsIntra_H263_1u16s", "keliEncodeDCIntra_H263_16s1u"},
    {"keliDecodeCoeffsInter_H263_1u16s", "keliEncodeCoeffsInter_H263_16s1u"},
    {"keliReconstructCoeffsIntra_H263_1u16s", "keliEncodeCoeffsIntra_H263_16s1u"},
    {"keliReconstructCoeffsIntra_H263_1u16s", "keliEncodeDCIntra_H263_16s1u"},
    {"keliReconstructCoeffsInter_H263_1u16s", "keliEncodeCoeffsInter_H263_16s1u"},
    {"keliDecodeDCIntra_H263_1u16s", "keliEncodeDCIntra_H263_16s1u"},
};

} // namespace

TEST_F(H26xBits, AnErrorOfThePreparingCallRefusesTheSet) {
    g_answer = kelStsRangeErr;
    for (Preparation const &p : preparations) {
        g_answered = p.prepares;
        suite::Outcome outcome = run(p.function);
        EXPECT_TRUE(rkIsError(outcome.result)) << p.function;
        EXPECT_TRUE(outcome.rows.empty()) << p.function;
        EXPECT_NE(outcome.log.find("--KEL ERROR. status = -5"), std::string::npos) << outcome.log;
        EXPECT_TRUE(suite::Sets::blocks().empty());
    }
}

TEST_F(H26xBits, WithoutMemoryThereIsNoSet) {
    NoSecondBlock full;
    for (char const *function : {"keliDecodeCoeffsIntra_H261_1u16s", "keliEncodeCoeffsIntra_H263_16s1u"}) {
        suite::Outcome outcome = run(function);
        EXPECT_TRUE(rkIsError(outcome.result));
        EXPECT_TRUE(outcome.rows.empty());
        EXPECT_TRUE(suite::Sets::blocks().empty());
    }
}
