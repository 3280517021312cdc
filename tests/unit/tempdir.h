// tempdir.h - a directory of its own for a test, gone with it, and whole files in and out.

#ifndef RAKOVA_TESTS_TEMPDIR_H
#define RAKOVA_TESTS_TEMPDIR_H

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include "text.h"

class TempDir {
public:
    TempDir() {
        std::string name = (std::filesystem::temp_directory_path() / "rakova_test_XXXXXX").string();
        if (!mkdtemp(name.data())) throw std::runtime_error("no directory for the test");
        m_path = name;
    }
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TempDir(TempDir const &) = delete;
    TempDir &operator=(TempDir const &) = delete;

    std::string path() const { return m_path; }
    // Name of a file in the directory.
    std::string path(std::string const &name) const { return m_path + "/" + name; }
    rkString operator/(std::string const &name) const { return rkString(path(name).c_str()); }

    // Makes a file of these bytes; returns its name.
    rkString write(std::string const &name, std::string const &bytes) const {
        std::ofstream(path(name), std::ios::binary) << bytes;
        return *this / name;
    }

private:
    std::string m_path;
};

inline std::string fileText(rkString const &name) {
    std::ifstream file(name.c_str(), std::ios::binary);
    if (!file) return "(no file)";
    return std::string(std::istreambuf_iterator<char>(file), {});
}

#endif
