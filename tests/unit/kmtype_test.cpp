// kmtype_test.cpp - tests of kmtype, and of the plain types that the framework and the library both declare.

#include <cstddef>

#include <gtest/gtest.h>

#include "rkplaintypes.h"

// The library's own definitions, beside those of the framework.
#undef KEL_PLAIN_TYPES_DEFINED
namespace library {
#include "keltypes.h"
}

#define EXPECT_SAME_FIELD(type, field)                                \
    EXPECT_EQ(offsetof(type, field), offsetof(library::type, field)); \
    EXPECT_TRUE((std::is_same_v<decltype(type::field), decltype(library::type::field)>))

TEST(PlainTypes, SizeIsTheSameInFrameworkAndLibrary) {
    EXPECT_EQ(sizeof(KeliSize), sizeof(library::KeliSize));
    EXPECT_SAME_FIELD(KeliSize, width);
    EXPECT_SAME_FIELD(KeliSize, height);
}

TEST(PlainTypes, LibraryVersionIsTheSameInFrameworkAndLibrary) {
    EXPECT_EQ(sizeof(KelLibraryVersion), sizeof(library::KelLibraryVersion));
    EXPECT_SAME_FIELD(KelLibraryVersion, major);
    EXPECT_SAME_FIELD(KelLibraryVersion, minor);
    EXPECT_SAME_FIELD(KelLibraryVersion, build);
    EXPECT_SAME_FIELD(KelLibraryVersion, Name);
    EXPECT_SAME_FIELD(KelLibraryVersion, Version);
    EXPECT_SAME_FIELD(KelLibraryVersion, BuildDate);
}
