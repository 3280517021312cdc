// workdir.h - a directory for the files of a benchmark, gone with the object.

#ifndef RAKOVA_BENCH_WORKDIR_H
#define RAKOVA_BENCH_WORKDIR_H

#include <stdlib.h>

#include <filesystem>
#include <string>

// In the directory of TMPDIR, or /tmp. A benchmark that cannot have one gets an empty path() and gives up.
class WorkDir {
public:
    WorkDir() {
        char const *parent = getenv("TMPDIR");
        std::string pattern = std::string(parent && *parent ? parent : "/tmp") + "/rakova_bench_XXXXXX";
        if (mkdtemp(pattern.data())) m_path = pattern;
    }
    ~WorkDir() {
        std::error_code ignored;
        if (!m_path.empty()) std::filesystem::remove_all(m_path, ignored);
    }
    WorkDir(WorkDir const &) = delete;
    WorkDir &operator=(WorkDir const &) = delete;

    std::string const &path() const { return m_path; }
    std::string path(std::string const &name) const { return m_path + "/" + name; }

private:
    std::string m_path;
};

#endif
