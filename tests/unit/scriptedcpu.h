// scriptedcpu.h - a processor whose CPUID leaves are written by the test.

#ifndef RAKOVA_TESTS_SCRIPTEDCPU_H
#define RAKOVA_TESTS_SCRIPTEDCPU_H

#include <array>
#include <cstring>
#include <map>
#include <string>
#include <utility>

#include "rkcpuid.h"

// Stands in for the processor as long as it lives. A leaf that was not written answers with poison below
// the largest function too, so that code that reads what it must not is found.
class ScriptedCpu {
public:
    using Registers = std::array<unsigned int, 4>; // EAX, EBX, ECX, EDX
    static const unsigned int poison = 0xdeadbeefu;

    explicit ScriptedCpu(char const *vendor = "GenuineTarvo", unsigned int largest = 4,
                         unsigned int largestExtended = 0x80000008u)
        : m_savedCpuid(cpuidSource), m_savedXgetbv(xgetbvSource) {
        unsigned int words[3] = {0, 0, 0};
        memcpy(words, vendor, strnlen(vendor, sizeof(words)));
        set(0, 0, {largest, words[0], words[2], words[1]});
        set(0x80000000u, 0, {largestExtended, 0, 0, 0});
        set(0x80000001u, 0, {0, 0, 0, 0});
        set(1, 0, {0, 0, 0, 0});
        set(2, 0, {0, 0, 0, 0});
        noCache(0);
        current() = this;
        cpuidSource = answer;
        xgetbvSource = answerStates;
    }
    ~ScriptedCpu() {
        cpuidSource = m_savedCpuid;
        xgetbvSource = m_savedXgetbv;
        current() = nullptr;
    }
    ScriptedCpu(ScriptedCpu const &) = delete;
    ScriptedCpu &operator=(ScriptedCpu const &) = delete;

    void set(unsigned int leaf, unsigned int subleaf, Registers regs) { m_leaves[{leaf, subleaf}] = regs; }
    Registers &at(unsigned int leaf, unsigned int subleaf = 0) { return m_leaves[{leaf, subleaf}]; }
    void setBit(unsigned int leaf, int reg, int bit) { at(leaf)[reg] |= 1u << bit; }

    void noCache(unsigned int i) { set(4, i, {0, poison, poison, poison}); }
    // Cache i of leaf 4; the numbers are counts, the registers hold them less 1. The entry behind it ends
    // the list.
    void cache(unsigned int i, unsigned int type, unsigned int sets, unsigned int line,
               unsigned int partitions, unsigned int ways) {
        set(4, i, {type, (line - 1) | (partitions - 1) << 12 | (ways - 1) << 22, sets - 1, 0});
        noCache(i + 1);
    }
    void cores(unsigned int n) { at(4)[0] = (at(4)[0] & 0x03ffffffu) | (n - 1) << 26; }
    void brand(char const *text) {
        unsigned int words[12] = {0};
        memcpy(words, text, strnlen(text, sizeof(words)));
        for (unsigned int i = 0; i < 3; ++i)
            set(0x80000002u + i, 0, {words[4 * i], words[4 * i + 1], words[4 * i + 2], words[4 * i + 3]});
    }
    void enabledStates(unsigned int states) { m_states = states; }
    int asked(unsigned int leaf) { return m_asked[leaf]; }

private:
    static ScriptedCpu *&current() {
        static ScriptedCpu *cpu = nullptr;
        return cpu;
    }
    static void answer(unsigned int *regs, int leaf, int subleaf) {
        ScriptedCpu &cpu = *current();
        ++cpu.m_asked[static_cast<unsigned int>(leaf)];
        auto found = cpu.m_leaves.find({static_cast<unsigned int>(leaf), static_cast<unsigned int>(subleaf)});
        for (int r = 0; r < 4; ++r) regs[r] = found == cpu.m_leaves.end() ? poison : found->second[r];
    }
    static unsigned int answerStates() { return current()->m_states; }

    std::map<std::pair<unsigned int, unsigned int>, Registers> m_leaves;
    std::map<unsigned int, int> m_asked;
    unsigned int m_states = 0;
    void (*m_savedCpuid)(unsigned int *, int, int);
    unsigned int (*m_savedXgetbv)();
};

#endif
