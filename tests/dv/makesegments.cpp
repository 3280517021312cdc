// makesegments.cpp - writes kelvc/src/dvsegments.cpp: makesegments > dvsegments.cpp

#include <cstdio>

#include "dvpictures.h"

static void write(dv::SuitePicture const &picture) {
    const dv::Segment segment = dv::arrange(dv::encode(picture.make()));
    std::printf("\n// %s\nunsigned char const %s[dvSegmentSize] = {", picture.comment, picture.name);
    for (size_t i = 0; i < segment.bytes.size(); ++i)
        std::printf("%s0x%02x,", i % 16 == 0 ? "\n    " : " ", segment.bytes[i]);
    std::printf("\n};\n");
}

int main() {
    std::printf(
        "// dvsegments.cpp - compressed video segments of DV, written by tests/dv/makesegments.cpp.\n"
        "\n#include \"dvsegments.h\"\n\n// clang-format off\n");
    for (dv::SuitePicture const &picture : dv::suitePictures) write(picture);
    std::printf("\n// clang-format on\n");
}
