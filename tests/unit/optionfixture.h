// optionfixture.h - the keys of a session with a library core.

#ifndef RAKOVA_TESTS_OPTIONFIXTURE_H
#define RAKOVA_TESTS_OPTIONFIXTURE_H

#include "rkoption.h"
#include "sessionfixture.h"

// With a core, all rows of the keys are there.
class OptionFixture : public SessionFixture {
protected:
    void SetUp() override {
        SessionFixture::SetUp();
        rkRegKelEnvironment(FakeCore::bind);
        setKelEnvironment();
        pSession->initSession();
        rkSession::m_exePath = m_dir / "prog";
        rkSession::setInDir("in");
        rkSession::setOutDir("out");
        rkSession::setDefName("");
        std::filesystem::create_directory(path("out"));
    }
    std::string info(char key, rkString arg = "") { return pSession->getOption(key)->m_info(arg).c_str(); }
    void apply(char key, rkString arg = "") { pSession->getOption(key)->m_apply(arg, pSession); }
    std::string in(std::string const &name) const { return path("in/" + name); }
    std::string out(std::string const &name) const { return path("out/" + name); }
};

#endif
