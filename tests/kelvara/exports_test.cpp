// exports_test.cpp - the libraries export what their headers declare, and nothing else.

#include "command.h"

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <vector>

namespace {

using Names = std::set<std::string>;

Names declaredIn(const std::string &header) {
    Names names;
    std::ifstream file(std::string(KELVARA_INCLUDE) + "/" + header);
    EXPECT_TRUE(file.is_open()) << header;
    const std::regex declaration(R"(^KELAPI .*?\b(kel\w+)\(.*\);$)");
    for (std::string line; std::getline(file, line);) {
        std::smatch match;
        if (std::regex_search(line, match, declaration)) names.insert(match[1]);
    }
    return names;
}

// The library's functions are strong symbols. Weak ones (W, V) are the standard library's templates and type
// information in builds without optimisation; names with two underscores belong to the sanitizers.
Names exportedBy(const std::string &library) {
    Names names;
    for (const std::string &line : linesOf("nm -D --defined-only '" + library + "'")) {
        std::istringstream fields(line);
        std::string address, type, name;
        fields >> address >> type >> name;
        if (type != "W" && type != "V" && name.compare(0, 2, "__") != 0) names.insert(name);
    }
    return names;
}

// All lines with KELAPI, so that a declaration in another form than the list above reads is noticed.
int countOfDeclarations(const std::string &header) {
    std::ifstream file(std::string(KELVARA_INCLUDE) + "/" + header);
    int count = 0;
    for (std::string line; std::getline(file, line);) count += line.find("KELAPI") != std::string::npos;
    return count;
}

void compare(const std::vector<std::string> &headers, const std::string &library) {
    Names declared;
    for (const std::string &header : headers) {
        const Names names = declaredIn(header);
        EXPECT_FALSE(names.empty()) << header;
        EXPECT_EQ(static_cast<size_t>(countOfDeclarations(header)), names.size()) << header;
        declared.insert(names.begin(), names.end());
    }
    EXPECT_EQ(declared, exportedBy(library));
}

// kelvc.h and the headers of its families.
std::vector<std::string> videoCodingHeaders() {
    std::vector<std::string> headers;
    for (const auto &entry : std::filesystem::directory_iterator(KELVARA_INCLUDE)) {
        const std::string name = entry.path().filename().string();
        if (name.compare(0, 5, "kelvc") == 0) headers.push_back(name);
    }
    return headers;
}

} // namespace

TEST(KelvaraExports, CoreEqualsItsHeader) {
    compare({"kelcore.h"}, KELVARA_LIB_KELCORE);
}
TEST(KelvaraExports, SignalsEqualTheirHeader) {
    compare({"kels.h"}, KELVARA_LIB_KELS);
}
TEST(KelvaraExports, ImagesEqualTheirHeader) {
    compare({"keli.h"}, KELVARA_LIB_KELI);
}
TEST(KelvaraExports, VideoCodingEqualsItsHeaders) {
    compare(videoCodingHeaders(), KELVARA_LIB_KELVC);
}
