// kmfunc_test.cpp - tests of kmfunc, kmname and kmchannels.

#include "km.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "text.h"

namespace {

struct Parts {
    rkString base, t1, t2, t3, descr;
    explicit Parts(kmFunc const &func) { func.parseFunction(base, t1, t2, t3, descr); }
    std::string types() const { return str(t1) + " " + str(t2) + " " + str(t3); }
};

std::vector<kmType> typesOf(kmFunc const &func) {
    kmType src = -1, src2 = -1, dst = -1, dst2 = -1;
    func.getTypes(src, src2, dst, dst2);
    return {src, src2, dst, dst2};
}

using Types = std::vector<kmType>;

int compareNames(char const *a, char const *b) {
    return kmFunc(a).compare(kmFunc(b));
}

} // namespace

// ---- parts -------------------------------------------------------------------

TEST(KmFunc, NameWithoutDescriptorIsCutIntoItsParts) {
    kmFunc func("keliSAD16x16_8u32s");
    EXPECT_EQ(str(func.prefix()), "keli");
    EXPECT_EQ(str(func.baseName()), "SAD16x16");
    EXPECT_EQ(str(func.typeName()), "8u32s");
    EXPECT_EQ(str(func.descrName()), "");
    EXPECT_EQ(Parts(func).types(), "8u 32s 32s");
    EXPECT_EQ(typesOf(func), (Types{8, 8, 288, 288}));
    EXPECT_EQ(str(func.srcChannelsName()), "");
    EXPECT_EQ(func.channels(1), 0);
}

TEST(KmFunc, BaseMayHoldUnderscores) {
    kmFunc func("keliFilterDeblockingLuma_VerEdge_AVS_8u_C1IR");
    EXPECT_EQ(str(func.baseName()), "FilterDeblockingLuma_VerEdge_AVS");
    EXPECT_EQ(str(func.typeName()), "8u");
    EXPECT_EQ(str(func.descrName()), "C1IR");
    EXPECT_EQ(str(func.srcChannelsName()), "C1");
    EXPECT_EQ(str(func.dstChannelsName()), "C1");
    EXPECT_TRUE(func.inplace());
    EXPECT_TRUE(func.roi());
}

TEST(KmFunc, CopyHasBytesAsSecondSource) {
    kmFunc exact("keliCopy_16s_C1R");
    EXPECT_EQ(exact.src2Type(), 8);
    EXPECT_EQ(exact.srcType(), 272);
    EXPECT_EQ(kmFunc("keliCopy8x8_8u_C1R").src2Type(), 8);
}

TEST(KmFunc, NameWithoutTypesIsAllBase) {
    kmFunc func("keliConvert16sc");
    EXPECT_EQ(str(func.prefix()), "keli");
    EXPECT_EQ(str(func.baseName()), "Convert16sc");
    EXPECT_EQ(str(func.typeName()), "");
    EXPECT_EQ(func.type(0), 1296);
    EXPECT_EQ(func.type(1), 0);
    EXPECT_EQ(typesOf(func), (Types{0, 0, 0, 0}));
}

TEST(KmFunc, PrefixNeedsItsFourLetters) {
    EXPECT_EQ(str(kmFunc("kelvcGetLibVersion").prefix()), "");
    EXPECT_EQ(str(kmFunc("kelvcGetLibVersion").baseName()), "kelvcGetLibVersion");
    EXPECT_EQ(str(kmFunc("kelsAdd_16s").prefix()), "kels");
    EXPECT_EQ(str(kmFunc("kel").prefix()), "");
    EXPECT_EQ(str(kmFunc("Keli_8u").prefix()), "");
}

TEST(KmFunc, EmptyBaseIsFoundAtPositionZero) {
    kmFunc func("_8u");
    EXPECT_EQ(str(func.baseName()), "");
    EXPECT_EQ(func.type(1), 8);
}

TEST(KmFunc, EmptyNameHasEmptyParts) {
    kmFunc func;
    EXPECT_EQ(str(func.prefix() + func.baseName() + func.typeName() + func.descrName()), "");
    EXPECT_EQ(func.type(0), 0);
    EXPECT_EQ(func.channels(1), 0);
}

TEST(KmFunc, DescriptorHoldsAllBehindTheTypes) {
    EXPECT_EQ(str(kmFunc("keliX_8u_C1R_x_y").descrName()), "C1R_x_y");
}

TEST(KmFunc, ThreePartsReplaceWhatWasInTheResults) {
    rkString base = "old", types = "old", descr = "old";
    kmFunc("keliX").parseFunction(base, types, descr);
    EXPECT_EQ(str(base), "X");
    EXPECT_EQ(str(types), "");
    EXPECT_EQ(str(descr), "");
}

TEST(KmFunc, SizesInTheBaseAreNoTypes) {
    EXPECT_EQ(str(kmFunc("keliA_8x8_16s_C1").baseName()), "A_8x8");
    EXPECT_EQ(str(kmFunc("keliA_64").baseName()), "A_64");
    EXPECT_EQ(str(kmFunc("keliA_64").typeName()), "");
}

TEST(KmFunc, NumberOfATokenIsFreeButOnlyKnownTypesCount) {
    kmFunc func("keliA_12u_C1");
    EXPECT_EQ(str(func.typeName()), "12u");
    EXPECT_EQ(func.type(1), 0);
}

TEST(KmFunc, OneTokenServesAllRoles) {
    EXPECT_EQ(Parts(kmFunc("keliX_16sc_C1")).types(), "16sc 16sc 16sc");
}

TEST(KmFunc, ThreeTokensAreTwoSourcesAndADestination) {
    kmFunc func("keliX_8u16s32f_C1");
    EXPECT_EQ(Parts(func).types(), "8u 16s 32f");
    EXPECT_EQ(typesOf(func), (Types{8, 272, 544, 544}));
    EXPECT_EQ(func.type(3), 544);
    EXPECT_EQ(func.type(4), 0);
    EXPECT_EQ(func.type(-1), 0);
}

TEST(KmFunc, EqualLastTokensGiveTheFirstTypeToTheSecondSource) {
    EXPECT_EQ(typesOf(kmFunc("keliX_8u16s16s")), (Types{8, 8, 272, 272}));
}

TEST(KmFunc, JunkBehindTheTokenLeavesTheOthersEmpty) {
    EXPECT_EQ(Parts(kmFunc("keliX_8uX")).types(), "8u  ");
}

// ---- types -------------------------------------------------------------------

struct TypeRow {
    char const *text;
    kmType type;
    int code;
};

static const TypeRow typeRows[] = {
    {"8u", 8, 1},      {"8s", 264, 3},     {"8sc", 1288, 0}, {"16u", 16, 5},   {"16s", 272, 7},
    {"16sc", 1296, 8}, {"16uc", 1040, 8},  {"32u", 32, 9},   {"32s", 288, 11}, {"32sc", 1312, 12},
    {"32f", 544, 13},  {"32fc", 1568, 14}, {"64u", 64, 15},  {"64s", 320, 17}, {"64sc", 1344, 18},
    {"64f", 576, 19},  {"64fc", 1600, 20}};

TEST(KmFunc, TypeTextsConvertBothWays) {
    for (TypeRow const &row : typeRows) {
        EXPECT_EQ(kmFunc::stringToType(row.text), row.type) << row.text;
        EXPECT_EQ(str(kmFunc::typeToString(row.type)), row.text);
    }
}

TEST(KmFunc, BitsAreStoredAsBytes) {
    EXPECT_EQ(kmFunc::stringToType("1u"), 8);
    EXPECT_EQ(kmFunc("keliX_1u16s_C1").srcType(), 8);
}

TEST(KmFunc, UnknownTypesAreUndefined) {
    EXPECT_EQ(kmFunc::stringToType("12u"), 0);
    EXPECT_EQ(kmFunc::stringToType(""), 0);
    EXPECT_EQ(kmFunc::stringToType("8uc"), 0);
    EXPECT_EQ(str(kmFunc::typeToString(0)), "undef");
    EXPECT_EQ(str(kmFunc::typeToString(1032)), "undef");
}

TEST(KmFunc, LibraryCodesOfTypes) {
    for (TypeRow const &row : typeRows) EXPECT_EQ(kmFunc::kelType(row.type), row.code) << row.text;
    EXPECT_EQ(kmFunc::kelType(0), 0);
}

TEST(KmFunc, BaseTypeGoesBeforeTheTokensOnlyForIndexZero) {
    kmFunc func("keliTo32fc_8u_C1");
    EXPECT_EQ(func.type(0), 1568);
    EXPECT_EQ(func.type(1), 8);
    EXPECT_EQ(kmFunc("keliSAD_16u").type(0), 16);
}

TEST(KmFunc, LongerBaseTypesAreFoundFirst) {
    EXPECT_EQ(kmFunc("a64f64sc").typeFromBase(), 1344);
    EXPECT_EQ(kmFunc("a16uc").typeFromBase(), 1040);
    EXPECT_EQ(kmFunc("a8s8u").typeFromBase(), 8);
    EXPECT_EQ(kmFunc("a32f32u").typeFromBase(), 32);
}

TEST(KmFunc, BaseTypesLack64u) {
    EXPECT_EQ(kmFunc("a64u").typeFromBase(), 0);
}

TEST(KmFunc, MagnitudeOfComplexIsReal) {
    kmFunc func("kelsMagnitude_32fc");
    EXPECT_EQ(func.dstType(), 544);
    EXPECT_EQ(func.dst2Type(), 544);
    EXPECT_EQ(func.srcType(), 1568);
}

TEST(KmFunc, SignalFunctionsWithRealDestination) {
    for (char const *base :
         {"Real", "Imag", "Magnitude", "Phase", "CplxToReal", "CartToPolar", "PowerSpectr"}) {
        kmFunc func((std::string("kels") + base + "_16sc").c_str());
        EXPECT_EQ(typesOf(func), (Types{1296, 1296, 272, 272})) << base;
    }
}

TEST(KmFunc, PolarToCartHasRealSources) {
    EXPECT_EQ(typesOf(kmFunc("kelsPolarToCart_32fc")), (Types{544, 544, 1568, 1568}));
}

TEST(KmFunc, RealToCplxHasComplexDestination) {
    EXPECT_EQ(typesOf(kmFunc("kelsRealToCplx_16s")), (Types{272, 272, 1296, 1296}));
}

TEST(KmFunc, DotProductOfRealAndComplexHasComplexSecondSource) {
    EXPECT_EQ(typesOf(kmFunc("kelsDotProd_32f32fc")), (Types{544, 1568, 1568, 1568}));
    EXPECT_EQ(typesOf(kmFunc("kelsDotProd_16s32s")), (Types{272, 272, 288, 288}));
    EXPECT_EQ(typesOf(kmFunc("kelsDotProd_32fc")), (Types{1568, 1568, 1568, 1568}));
}

TEST(KmFunc, MixedMultiplicationHasSecondSourceOfTheDestination) {
    EXPECT_EQ(typesOf(kmFunc("kelsMul_16u16s_Sfs")), (Types{16, 272, 272, 272}));
}

TEST(KmFunc, GoertzHasComplexDestination) {
    EXPECT_EQ(typesOf(kmFunc("kelsGoertzTwo_32f")), (Types{544, 544, 1568, 1568}));
}

TEST(KmFunc, ImageSumsAreDoubles) {
    EXPECT_EQ(typesOf(kmFunc("keliSum_8u_C1R")), (Types{8, 8, 576, 576}));
    EXPECT_EQ(typesOf(kmFunc("keliMean_16s_C1R")), (Types{272, 272, 576, 576}));
    EXPECT_EQ(typesOf(kmFunc("keliSumX_8u_C1R")), (Types{8, 8, 8, 8}));
}

TEST(KmFunc, ImageSetHasBytesAsSecondSource) {
    EXPECT_EQ(kmFunc("keliSet_32f_C1R").src2Type(), 8);
}

TEST(KmFunc, ImageComparisonGivesBytesInOneChannel) {
    kmFunc func("keliCompareEqual_32f_C3R");
    EXPECT_EQ(func.dstType(), 8);
    EXPECT_EQ(func.srcChannels(), 3);
    EXPECT_EQ(func.dstChannels(), 1);
}

TEST(KmFunc, SignalExceptionsDoNotTouchImages) {
    EXPECT_EQ(kmFunc("keliMagnitude_32fc_C1").dstType(), 1568);
    EXPECT_EQ(kmFunc("kelsSum_16s").dstType(), 272);
}

TEST(KmFunc, TypeByArgument) {
    kmFunc func("keliX_8u16s32f_C1");
    EXPECT_EQ(func.type(kmSrc), 8);
    EXPECT_EQ(func.type(kmSrc2), 272);
    EXPECT_EQ(func.type(kmDst), 544);
    EXPECT_EQ(func.type(kmDst2), 544);
    EXPECT_EQ(func.type(static_cast<kmArg>(16)), 0);
}

class OwnRules : public kmFunc {
public:
    using kmFunc::kmFunc;
    void updateTypes(kmType &src, kmType &, kmType &, kmType &) const override { src = 64; }
    void updateChannels(int &src, int &) const override { src = 9; }
    void updatePlanes(bool &src, bool &) const override { src = true; }
};

TEST(KmFunc, SubclassesReplaceTheRules) {
    OwnRules func("keliCompare_8u_C3R");
    EXPECT_EQ(func.srcType(), 64);
    EXPECT_EQ(func.dstType(), 8);
    EXPECT_EQ(func.srcChannels(), 9);
    EXPECT_EQ(func.dstChannels(), 3);
    EXPECT_TRUE(func.srcPlane());
}

// ---- channels ----------------------------------------------------------------

TEST(KmFunc, PixelOrderToPlanesHasBothTokens) {
    kmFunc func("keliX_8u_C3P3R");
    EXPECT_EQ(str(func.channelsName(1)), "C3");
    EXPECT_EQ(str(func.channelsName(2)), "P3");
    bool src = true, dst = false;
    func.getPlanes(src, dst);
    EXPECT_FALSE(src);
    EXPECT_TRUE(dst);
    EXPECT_FALSE(func.plane(1));
    EXPECT_TRUE(func.plane(2));
    EXPECT_TRUE(func.plane(kmDst2));
    EXPECT_FALSE(func.plane(kmSrc2));
}

TEST(KmFunc, PlanesToPixelOrderIsPlanarInTheSource) {
    kmFunc func("keliX_8u_P3C3R");
    EXPECT_TRUE(func.srcPlane());
    EXPECT_FALSE(func.dstPlane());
    EXPECT_EQ(str(func.srcChannelsName()), "P3");
}

TEST(KmFunc, PlanesAloneAreBothPlanar) {
    kmFunc func("keliX_8u_P4R");
    EXPECT_TRUE(func.srcPlane());
    EXPECT_TRUE(func.dstPlane());
    EXPECT_EQ(func.channels(2), 4);
}

TEST(KmFunc, NoPlanesWithoutP) {
    EXPECT_FALSE(kmFunc("keliX_8u_C3R").srcPlane());
    EXPECT_FALSE(kmFunc("keliX_8u_C3R").dstPlane());
}

TEST(KmFunc, PWithoutNumberMakesTheTokenBeforeItPlanar) {
    kmFunc func("keliX_8u_C3PR");
    EXPECT_EQ(str(func.srcChannelsName()), "P3");
    EXPECT_EQ(str(func.dstChannelsName()), "P3");
    EXPECT_TRUE(func.plane(1));
}

TEST(KmFunc, AlphaTokenHasThreeCharacters) {
    kmFunc func("keliX_8u_AC4R");
    EXPECT_EQ(str(func.channelsName(1)), "AC4");
    EXPECT_EQ(func.channels(1), 4);
    EXPECT_TRUE(func.alpha(1));
    EXPECT_TRUE(func.alpha(kmDst));
    bool src = false, dst = false;
    func.getAlpha(src, dst);
    EXPECT_TRUE(src && dst);
}

TEST(KmFunc, AlphaOfEachSideIsItsOwn) {
    kmFunc func("keliX_8u_AC4C3R");
    EXPECT_TRUE(func.srcAlpha());
    EXPECT_FALSE(func.dstAlpha());
    EXPECT_EQ(func.channels(kmSrc), 4);
    EXPECT_EQ(func.channels(kmDst), 3);
}

TEST(KmFunc, A0C4IsTheTokenC4) {
    kmFunc func("keliX_8u_A0C4R");
    EXPECT_EQ(str(func.channelsName(1)), "C4");
    EXPECT_EQ(func.kelChannels(1), 4);
}

TEST(KmFunc, ChannelNumbersOutsideOfOneToFourGiveNoToken) {
    EXPECT_EQ(str(kmFunc("keliX_8u_C5R").channelsName(1)), "");
    EXPECT_EQ(str(kmFunc("keliX_8u_C0R").channelsName(1)), "");
    EXPECT_EQ(str(kmFunc("keliX_8u_C").channelsName(1)), "");
}

TEST(KmFunc, OtherArgumentsHaveOneChannelAndNoName) {
    kmFunc func("keliX_8u_C3R");
    EXPECT_EQ(func.channels(0), 1);
    EXPECT_EQ(func.channels(3), 1);
    EXPECT_EQ(func.channels(static_cast<kmArg>(16)), 1);
    EXPECT_EQ(str(func.channelsName(0)), "");
    EXPECT_EQ(str(func.channelsName(static_cast<kmArg>(16))), "");
    EXPECT_FALSE(func.plane(3));
    EXPECT_FALSE(func.alpha(0));
}

TEST(KmFunc, SecondArgumentsShareTheChannelsOfTheirSide) {
    kmFunc func("keliX_8u_C3C1R");
    EXPECT_EQ(str(func.channelsName(kmSrc2)), "C3");
    EXPECT_EQ(str(func.channelsName(kmDst2)), "C1");
    EXPECT_EQ(func.channels(kmSrc2), 3);
    EXPECT_EQ(func.channels(kmDst2), 1);
}

TEST(KmFunc, LibraryCodesOfLayouts) {
    struct {
        char const *name;
        int code;
    } rows[] = {{"C1", 1}, {"C2", 2},  {"C3", 3},  {"C4", 4},   {"P2", 5}, {"P3", 6},
                {"P4", 7}, {"AC1", 8}, {"AC4", 9}, {"AP4", 11}, {"P1", 0}, {"AC3", 0}};
    for (auto const &row : rows) {
        kmFunc func((std::string("_8u_") + row.name + "R").c_str());
        EXPECT_EQ(func.kelChannels(1), row.code) << row.name;
    }
    EXPECT_EQ(kmFunc("_8u_C3C1").kelChannels(2), 1);
    EXPECT_EQ(kmFunc("_8u_C3C1").kelChannels(3), 0);
}

// ---- flags -------------------------------------------------------------------

TEST(KmFunc, FlagsAreSearchedInTheDescriptorAlone) {
    kmFunc func("keliIMSfsRC_8u");
    EXPECT_FALSE(func.inplace() || func.mask() || func.scale() || func.roi() || func.coi());
    kmFunc all("keliX_8u_C1MIRSfs");
    EXPECT_TRUE(all.inplace() && all.mask() && all.scale() && all.roi());
}

TEST(KmFunc, ChannelOfInterestIsACWithoutNumber) {
    EXPECT_TRUE(kmFunc("keliX_8u_C3CR").coi());
    EXPECT_TRUE(kmFunc("keliX_8u_C1C").coi());
    EXPECT_TRUE(kmFunc("keliX_8u_C5").coi());
    EXPECT_FALSE(kmFunc("keliX_8u_C3C1R").coi());
}

TEST(KmFunc, EmptyDescriptorHasNoChannelOfInterest) {
    EXPECT_FALSE(kmFunc("keliX_8u").coi());
}

// ---- order -------------------------------------------------------------------

TEST(KmFunc, OrderIsByBaseFirst) {
    EXPECT_LT(compareNames("keliA_32f_C4IR", "keliB_8u_C1R"), 0);
    EXPECT_LT(compareNames("keliZ_8u", "kelsA_8u"), 0);
    EXPECT_GT(compareNames("keliAB_8u", "keliA_32f"), 0);
}

TEST(KmFunc, OrderIsByFirstTypeThen) {
    EXPECT_LT(compareNames("keliA_8u_C4IR", "keliA_16u_C1R"), 0);
    EXPECT_EQ(compareNames("keliA_8u32s_C1", "keliA_8u16s_C1"), 0);
}

TEST(KmFunc, OnlyTheFirstTypeCounts) {
    EXPECT_EQ(kmFunc::compareTypes("8u32f", "8u16s"), 0);
}

TEST(KmFunc, RealTypesComeBeforeComplexOnes) {
    EXPECT_LT(kmFunc::compareTypes("16s", "16sc"), 0);
    EXPECT_GT(kmFunc::compareTypes("16sc", "16s"), 0);
    EXPECT_LT(kmFunc::compareTypes("16sc", "32s"), 0);
    EXPECT_EQ(kmFunc::compareTypes("16s", "16s"), 0);
}

TEST(KmFunc, MissingTypesComeFirst) {
    EXPECT_EQ(kmFunc::compareTypes("", ""), 0);
    EXPECT_EQ(kmFunc::compareTypes("", "8u"), -1);
    EXPECT_EQ(kmFunc::compareTypes("8u", ""), 1);
}

TEST(KmFunc, InPlaceFormsComeLast) {
    EXPECT_EQ(kmFunc::compareDescr("C1IR", "C3R"), 1);
    EXPECT_EQ(kmFunc::compareDescr("C3R", "AC4IR"), -1);
}

TEST(KmFunc, FormsWithAlphaComeBehindThoseWithout) {
    EXPECT_EQ(kmFunc::compareDescr("AC4R", "C4R"), 1);
    EXPECT_EQ(kmFunc::compareDescr("C4R", "AC4R"), -1);
    EXPECT_LT(kmFunc::compareDescr("AC4R", "P3R"), 0);
}

TEST(KmFunc, OtherDescriptorsAreComparedAsTexts) {
    EXPECT_LT(kmFunc::compareDescr("C1R", "C3R"), 0);
    EXPECT_GT(kmFunc::compareDescr("C1R", "C1"), 0);
    EXPECT_EQ(kmFunc::compareDescr("C1R", "C1R"), 0);
}

TEST(KmFunc, SortedNamesStandInTheListsOrder) {
    std::vector<std::string> sorted = {"keliAdd_8u_C1R",  "keliAdd_8u_C3R",  "keliAdd_8u_AC4R",
                                       "keliAdd_8u_C1IR", "keliAdd_16s_C1R", "keliAdd_16sc_C1R",
                                       "keliSub_8u_C1R",  "kelsAdd_8u"};
    std::vector<std::string> names(sorted.rbegin(), sorted.rend());
    std::sort(names.begin(), names.end(), [](std::string const &a, std::string const &b) {
        return compareNames(a.c_str(), b.c_str()) < 0;
    });
    EXPECT_EQ(names, sorted);
}
