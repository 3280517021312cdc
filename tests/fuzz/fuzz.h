// fuzz.h - what the fuzz targets share: the cutting of the input, memory files, and the check of a property.

#ifndef RAKOVA_FUZZ_H
#define RAKOVA_FUZZ_H

#include <stddef.h>
#include <stdint.h>

#include <string>
#include <vector>

#include "rkstring.h"

// Each target defines this; any input must return, and a broken property ends the process.
extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size);

// Ends the process with the property's text, and what it was broken by, unless it holds.
void require(bool holds, char const *property, std::string const &what = "");

// All of a string, NULs too.
std::string str(rkString const &text);
rkString rk(std::string const &text);
std::vector<std::string> listed(rkStringList const &list);

// The text up to its first NUL, which is all that a C string can tell.
std::string cText(std::string text);

// Takes the input apart by lines, so that corpus files can be read and written by hand.
class FuzzInput {
public:
    FuzzInput(uint8_t const *data, size_t size) : m_rest(reinterpret_cast<char const *>(data), size) {}

    bool empty() const { return m_rest.empty(); }
    std::string line(); // without its line feed
    std::vector<std::string> lines();
    std::string rest();

private:
    std::string m_rest;
};

// A file without a place on any disk. Its path can be opened like that of any other.
class MemoryFile {
public:
    explicit MemoryFile(std::string const &content);
    ~MemoryFile();
    MemoryFile(MemoryFile const &) = delete;
    MemoryFile &operator=(MemoryFile const &) = delete;

    rkString path() const;
    std::string content() const;

private:
    int m_handle;
};

#endif
