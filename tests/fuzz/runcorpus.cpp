// runcorpus.cpp - runs a fuzz target once on each file of its corpus, in builds without the fuzzer.

#include <stdio.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "fuzz.h"

static std::string contentOf(std::filesystem::path const &path) {
    std::ifstream file(path, std::ios::binary);
    require(file.good(), "the corpus file opens", path.string());
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

// An empty or missing corpus is a failure: it would test nothing.
int main(int argc, char **argv) {
    if (argc != 2 || !std::filesystem::is_directory(argv[1])) return 2;
    std::vector<std::filesystem::path> files;
    for (auto const &entry : std::filesystem::directory_iterator(argv[1])) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (std::filesystem::path const &path : files) {
        fprintf(stderr, "%s\n", path.c_str());
        std::string content = contentOf(path);
        LLVMFuzzerTestOneInput(reinterpret_cast<uint8_t const *>(content.data()), content.size());
    }
    return files.empty() ? 1 : 0;
}
