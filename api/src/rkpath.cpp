// rkpath.cpp - default directories and names of files.

#include <string.h>

#include "rksession.h"

rkString extIni = ".ini";
rkString extCsv = ".csv";
rkString extOut = ".txt";
rkString extSgl = ".end";
rkString extName = "_name.csv";
rkString extSum = "_sum.csv";
rkString extMem = "_mem.csv";

rkString rkSession::m_exePath = "";
rkString rkSession::m_defName = "";
rkString rkSession::m_inDir = "";
rkString rkSession::m_outDir = "";

static bool isPathSeparator(char c) {
    return c == '/' || c == '\\';
}

bool isAbsolutePath(rkString path) {
    if (path.length() > 0 && isPathSeparator(path[0])) return true;
    return path.length() > 1 && path[1] == ':';
}

rkString genDirName(rkString dir) {
    if (dir.length() == 0) return rkSession::m_exePath.getFileDir();
    if (!isPathSeparator(dir[dir.length() - 1])) dir += "/";
    return isAbsolutePath(dir) ? dir : rkSession::m_exePath.getFileDir() + dir;
}

rkString genPathName(rkString dir, rkString name, rkString ext) {
    if (isAbsolutePath(name)) return name;
    if (name.length() == 0) return dir + rkSession::m_defName + ext;
    return name.find(".") == rkString::npos ? dir + name + ext : dir + name;
}

rkString getDirPath(rkString name, rkString dir) {
    if (isAbsolutePath(name)) return name;
    if (dir.length() == 0) return rkSession::m_exePath.getFileDir() + name;
    bool inside = strncmp(name.c_str(), dir.c_str(), dir.length()) == 0;
    return inside ? name : dir + name;
}

void rkSession::setInDir(rkString dir) {
    m_inDir = genDirName(dir);
}

void rkSession::setOutDir(rkString dir) {
    m_outDir = genDirName(dir);
}

void rkSession::setDefName(rkString name) {
    m_defName = name.length() > 0 ? name : m_exePath.getFileTitle();
}

rkString rkSession::genInPath(rkString name, rkString ext) {
    return genPathName(m_inDir, name, ext);
}

rkString rkSession::genOutPath(rkString name, rkString ext) {
    return genPathName(m_outDir, name, ext);
}

rkString rkSession::getInPath(rkString name) {
    return getDirPath(name, m_inDir);
}

rkString rkSession::getOutPath(rkString name) {
    return getDirPath(name, m_outDir);
}
