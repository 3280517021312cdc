// vc1test.h - what the tests of the VC-1 functions share.

#ifndef RAKOVA_VC1TEST_H
#define RAKOVA_VC1TEST_H

#include <initializer_list>

#include "kmvc.h"

// A call is the unit.
class VC1Test : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    rkString getUnit() override { return "all"; }

protected:
    // The next parameter; a value is shown as the name, "=" and the value.
    void addParameter(rkMapIterator<int> &parm, char const *name, std::initializer_list<int> values) {
        m_parms.push_back(&parm);
        parm.init(name);
        for (int value : values) {
            rkString label(name);
            label << "=" << value;
            parm[value] = label;
            parm.add(value);
        }
    }
    // The blocks of a quantiser.
    void addBlockSize(rkMapIterator<int> &width, rkMapIterator<int> &height) {
        if (m_func.find("Intra") >= 0) {
            addParameter(width, "width", {8});
            addParameter(height, "height", {8});
        } else {
            addParameter(width, "width", {4, 8});
            addParameter(height, "height", {4, 8});
        }
    }
    // The functions are too short for a stable result by the auto method.
    void makeAutoStatistic(int calls) {
        if (m_tool.getMethodAuto()) m_tool.setMethodStat(calls, 0);
    }
    static bool makeDefault(kmVector &vector, int length) {
        return vector.createVectorExt(length, rkGetVectorShift(), SetDefault, 0, 0);
    }
};

#endif
