// fuzz.cpp - what the fuzz targets share.

#include "fuzz.h"

#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

// The framework's handlers would keep the fuzzer from putting its own in place, and with them the report.
extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    for (int sig : {SIGFPE, SIGILL, SIGSEGV}) signal(sig, SIG_DFL);
    return 0;
}

void require(bool holds, char const *property, std::string const &what) {
    if (holds) return;
    fprintf(stderr, "BROKEN: %s: \"%s\"\n", property, what.c_str());
    abort();
}

std::string str(rkString const &text) {
    return std::string(text.c_str(), text.length());
}

rkString rk(std::string const &text) {
    rkString copy("");
    copy.append(text.data(), static_cast<int>(text.size()));
    return copy;
}

std::vector<std::string> listed(rkStringList const &list) {
    std::vector<std::string> texts;
    for (rkString const &text : list) texts.push_back(str(text));
    return texts;
}

std::string cText(std::string text) {
    text.resize(strlen(text.c_str()));
    return text;
}

// ---- input -------------------------------------------------------------------

std::string FuzzInput::line() {
    size_t end = m_rest.find('\n');
    std::string first = m_rest.substr(0, end);
    m_rest = end == std::string::npos ? "" : m_rest.substr(end + 1);
    return first;
}

std::vector<std::string> FuzzInput::lines() {
    std::vector<std::string> all;
    while (!empty()) all.push_back(line());
    return all;
}

std::string FuzzInput::rest() {
    return std::move(m_rest);
}

// ---- memory files ------------------------------------------------------------

MemoryFile::MemoryFile(std::string const &content) : m_handle(memfd_create("rakova-fuzz", MFD_CLOEXEC)) {
    ssize_t written = write(m_handle, content.data(), content.size());
    require(written == static_cast<ssize_t>(content.size()), "the memory file takes its content");
}

MemoryFile::~MemoryFile() {
    close(m_handle);
}

rkString MemoryFile::path() const {
    rkString path("/proc/self/fd/");
    return path << m_handle;
}

std::string MemoryFile::content() const {
    struct stat state = {};
    require(fstat(m_handle, &state) == 0, "the memory file has a size");
    std::string text(static_cast<size_t>(state.st_size), '\0');
    ssize_t got = pread(m_handle, text.data(), text.size(), 0);
    require(got == static_cast<ssize_t>(text.size()), "the memory file gives its content");
    return text;
}
