// freshstart.h - every case begins with the settings of a program that has just started.

#ifndef RAKOVA_TESTS_FRESHSTART_H
#define RAKOVA_TESTS_FRESHSTART_H

#include <gtest/gtest.h>

#include "rkcstream.h"
#include "rkistream.h"
#include "rkmemory.h"
#include "rkregister.h"
#include "rksession.h"
#include "rkstream.h"
#include "rktest.h"
#include "rktestlist.h"
#include "rkticker.h"
#include "rktool.h"

// The settings as they are now; restore() brings them back, and frees the lists that came since.
class Settings {
public:
    void restore() const {
        g_tool = m_tool;
        g_ostrm.setOutLevel(m_outLevel);
        g_ostrm.m_msgLevel = m_msgLevel;
        g_ostrm.m_msgStack.clear();
        restoreMemory();
        restoreTest();
        restoreInput();
        rkCpuTicker::m_freqMHz = m_freqMHz;
        rkSession::m_nameMode = m_nameMode;
        rkSession::m_nameExit = m_nameExit;
        pSession = m_session;
        restoreList(g_pParmList, m_parmList);
        restoreList(g_pHotList, m_hotList);
        initTimingMethod = m_initTimingMethod;
    }

private:
    template <class T>
    static void restoreList(rkList<T> *&list, rkList<T> *old) {
        if (list != old) delete list;
        list = old;
    }
    void restoreMemory() const {
        rkSetVectorShift(m_shift);
        rkSetVectorAlign(m_align);
        rkSetAlignSrc(m_alignSrc);
        rkSetAlignByByte(m_alignByByte);
    }
    void restoreTest() const {
        rkTest::m_currentResult = m_result;
        rkTest::m_numParmsColm = m_numParmsColm;
        rkTest::m_numResultColm = m_numResultColm;
        rkTest::m_hot = m_hot;
        rkTest::m_pressing = m_pressing;
        rkTest::m_cache = m_cache;
        rkTest::m_vectorNum = m_vectorNum;
        rkTest::m_vectorShift = m_vectorShift;
        rkTestList::m_startFunc = m_startFunc;
        rkTool::m_pCheckStatus = m_checkStatus;
        rkTool::m_priority = m_priority;
    }
    void restoreInput() const {
        g_istrm.close();
        g_istrm.m_data.clear();
        g_istrm.m_section = m_section;
        g_istrm.m_source = m_source;
    }

    rkTool m_tool{g_tool};
    OutputLevel m_outLevel = g_ostrm.outLevel();
    MessageLevel m_msgLevel = g_ostrm.msgLevel();
    int m_shift = rkGetVectorShift(), m_align = rkGetVectorAlign();
    bool m_alignSrc = rkGetAlignSrc(), m_alignByByte = rkGetAlignByByte();
    rkResult m_result = rkTest::m_currentResult;
    int m_numParmsColm = rkTest::m_numParmsColm, m_numResultColm = rkTest::m_numResultColm;
    int m_hot = rkTest::m_hot;
    bool m_pressing = rkTest::m_pressing, m_cache = rkTest::m_cache;
    int m_vectorNum = rkTest::m_vectorNum, m_vectorShift = rkTest::m_vectorShift;
    rkString m_startFunc{rkTestList::m_startFunc};
    rkResult (*m_checkStatus)(int) = rkTool::m_pCheckStatus;
    int m_priority = rkTool::m_priority;
    rkString m_section{g_istrm.m_section};
    int m_source = g_istrm.m_source;
    int m_freqMHz = rkCpuTicker::m_freqMHz;
    int m_nameMode = rkSession::m_nameMode;
    bool m_nameExit = rkSession::m_nameExit;
    rkSession *m_session = pSession;
    rkList<rkParameter *> *m_parmList = g_pParmList;
    rkList<rkString> *m_hotList = g_pHotList;
    void (*m_initTimingMethod)(rkTool &) = initTimingMethod;
};

class FreshStart : public testing::EmptyTestEventListener {
public:
    // Whether it is registered: a header's constant does it for the program that includes it.
    static bool listen() {
        testing::UnitTest::GetInstance()->listeners().Append(new FreshStart);
        return true;
    }
    void OnTestProgramStart(testing::UnitTest const &) override { m_settings = new Settings; }
    void OnTestStart(testing::TestInfo const &) override { m_settings->restore(); }
    void OnTestProgramEnd(testing::UnitTest const &) override { delete m_settings; }

private:
    Settings *m_settings = nullptr;
};

static bool const freshStart = FreshStart::listen();

#endif
