// docs_test.cpp - what README.md and docs/ show and tell is what the program does.

#include "program.h"

#include <unistd.h>

#include <regex>

#include "rkresult.h"

namespace {

const std::string source = RAKOVA_SOURCE "/";

std::string textOf(std::string const &name) {
    std::ifstream stream(source + name);
    EXPECT_TRUE(stream) << "no file " << name;
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

// The fenced blocks of a page in one language.
std::vector<std::string> blocksOf(std::string const &page, std::string const &language) {
    std::vector<std::string> blocks;
    std::string fence; // that opened the block in hand, or none
    for (std::string const &line : linesIn(textOf(page))) {
        if (line.compare(0, 3, "```") == 0) {
            fence = fence.empty() ? line : "";
            if (fence == "```" + language) blocks.push_back("");
        } else if (fence == "```" + language) {
            blocks.back() += line + "\n";
        }
    }
    return blocks;
}

// The lines of README.md that are commands, without their comments.
Lines commandsOfReadme() {
    Lines commands;
    const std::regex command("    ((scripts/|build/|cmake |mkdir |diff |LD_LIBRARY_PATH=).*?) *(#.*)?");
    std::smatch match;
    for (std::string const &line : linesIn(textOf("README.md"))) {
        if (std::regex_match(line, match, command)) commands.push_back(match[1]);
    }
    return commands;
}

std::string replaced(std::string text, std::string const &what, std::string const &with) {
    for (size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += with.size()) {
        text.replace(at, what.size(), with);
    }
    return text;
}

std::string withoutEmptyLines(std::string const &text) {
    std::string kept;
    for (std::string const &line : linesIn(text)) {
        if (!line.empty()) kept += line + "\n";
    }
    return kept;
}

// A line with its figures and the blanks around them masked, and other blanks as one.
std::string shapeOf(std::string const &line) {
    const std::regex figure(" *[0-9]+(\\.[0-9]+)?(e[+-][0-9]+)? *");
    return std::regex_replace(std::regex_replace(line, figure, "#"), std::regex(" +"), " ");
}

class Docs : public Program {
protected:
    // Commands of a page, with its places exchanged for those of the test.
    std::string placed(std::string command) const {
        command = replaced(command, "/tmp/", m_dir + "/");
        return replaced(command, "build/release", "'" RAKOVA_BUILD "'");
    }
};

// ---- README.md --------------------------------------------------------------------

TEST_F(Docs, SampleOfReadmeHasTheShapeOfRealOutput) {
    Outcome outcome = run("-B -LPERF -fkeliSumsDiff8x8Blocks4x4_8u16s_C1 -r -l" + m_dir);
    const Lines readme = linesIn(textOf("README.md"));
    const std::regex date("[A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9][0-9]");
    auto masked = [&](std::string const &line) { return shapeOf(std::regex_replace(line, date, "#")); };
    for (char const *key :
         {"| Function  : ", "SrcPitch=SrcPitch=16 PredPitch=PredPitch=16 save_diff=save_diff=0",
          "  acc=", "keliSumsDiff8x8Blocks4x4,"}) {
        const Lines shown = linesWith(readme, std::string("    ") + key);
        ASSERT_EQ(shown.size(), 1u) << key;
        Lines real = linesWith(outcome.lines, key);
        for (std::string const &row : linesWith(file("rakova.csv"), key)) real.push_back(row);
        ASSERT_FALSE(real.empty()) << key;
        EXPECT_EQ(masked(shown[0].substr(4)), masked(real[0]));
    }
}

TEST_F(Docs, RowOfReadmeHasTheColumnsOfTheTable) {
    run(quick + "-fkeliSumsDiff8x8Blocks4x4_8u16s_C1 -r -l" + m_dir);
    const Lines title = linesWith(file("rakova.csv"), "funcBase,");
    const Lines row = linesWith(linesIn(textOf("README.md")), "    keliSumsDiff8x8Blocks4x4,");
    ASSERT_EQ(title.size(), 1u);
    ASSERT_EQ(row.size(), 1u);
    EXPECT_EQ(cellsIn(row[0]).size(), cellsIn(title[0]).size());
}

TEST_F(Docs, ReadmeNamesEveryWordThatATestEndsIn) {
    const std::string readme = textOf("README.md");
    for (int result = rkResSuccess; result <= rkResError; ++result) {
        std::string name = rkResultName(static_cast<rkResult>(result));
        if (result == rkResWarning) continue; // no test ends in the class of warnings itself
        EXPECT_NE(readme.find("`" + name + "`"), std::string::npos) << name;
    }
}

TEST_F(Docs, MeasuringCommandsOfReadmeWriteTheTablesThatItCompares) {
    int measured = 0;
    for (std::string command : commandsOfReadme()) {
        const bool measures = command.find("kelvc/src/rakova ") != std::string::npos;
        if (!measures && command.find("mkdir ") != 0) continue;
        if (measures) command += " -dMethod=Manual -dNumLoops=3 >/dev/null";
        EXPECT_EQ(shell(replaced(placed(command), "build/v3/kelvara", OTHER_LIBRARIES)).status, 0) << command;
        measured += measures;
    }
    EXPECT_EQ(measured, 3);
    EXPECT_GT(linesWith(file("results/rakova.csv"), "SAD16x16").size(), 0u);

    Lines first = file("a/rakova.csv"), second = file("b/rakova.csv");
    if (KELVARA_ARCH != std::string("v2")) {
        EXPECT_NE(linesWith(first, "Library,"), linesWith(second, "Library,"));
    }
    auto upToClocks = [](Lines const &rows) {
        Lines names;
        for (std::string const &row : rows) {
            if (row.find("keli") == 0) names.push_back(row.substr(0, row.find(",nLps=")));
        }
        return names;
    };
    EXPECT_EQ(upToClocks(first), upToClocks(second));
    EXPECT_GT(upToClocks(first).size(), 0u);
}

TEST_F(Docs, FilesThatPagesPointToExist) {
    namespace fs = std::filesystem;
    int links = 0;
    std::vector<fs::path> pages = {fs::path(source) / "README.md"};
    for (auto const &entry : fs::directory_iterator(source + "docs")) pages.push_back(entry.path());
    const std::regex link("\\]\\(([^)#]+)\\)");
    for (fs::path const &page : pages) {
        const std::string text = textOf(fs::relative(page, source));
        for (std::sregex_iterator i(text.begin(), text.end(), link), end; i != end; ++i, ++links) {
            EXPECT_TRUE(fs::exists(page.parent_path() / (*i)[1].str())) << page << " points to " << (*i)[1];
        }
    }
    EXPECT_GT(links, 0);
}

TEST_F(Docs, ScriptsAndPresetsOfReadmeExist) {
    const std::string presets = textOf("CMakePresets.json");
    for (std::string const &command : commandsOfReadme()) {
        std::smatch match;
        if (std::regex_search(command, match, std::regex("^scripts/[a-z]+"))) {
            EXPECT_EQ(access((source + match.str()).c_str(), X_OK), 0) << command;
        }
        if (std::regex_search(command, match, std::regex("--preset ([a-z]+)"))) {
            EXPECT_NE(presets.find("\"name\": \"" + match[1].str() + "\""), std::string::npos) << command;
        }
    }
}

// ---- docs/adding-a-test.md ----------------------------------------------------------

const std::string page = "docs/adding-a-test.md";

TEST_F(Docs, PageOnAddingATestShowsTheWholeTestFile) {
    std::string shown;
    const std::vector<std::string> blocks = blocksOf(page, "cpp");
    ASSERT_GT(blocks.size(), 1u);
    for (size_t i = 1; i < blocks.size(); ++i) shown += blocks[i];
    EXPECT_EQ(withoutEmptyLines(shown), withoutEmptyLines(textOf("examples/sumtest.cpp")));
}

TEST_F(Docs, PageOnAddingATestShowsTheDeclarationOfThePrimitive) {
    const std::vector<std::string> blocks = blocksOf(page, "cpp");
    ASSERT_FALSE(blocks.empty());
    EXPECT_NE(textOf("examples/sum.h").find(blocks[0]), std::string::npos) << blocks[0];
}

TEST_F(Docs, PageOnAddingATestShowsTheBuildFileUpToItsProgram) {
    const std::vector<std::string> blocks = blocksOf(page, "cmake");
    ASSERT_EQ(blocks.size(), 1u);
    EXPECT_EQ(textOf("examples/CMakeLists.txt").find(blocks[0]), 0u) << blocks[0];
}

// The installed archives of a sanitizer build would ask the example for the sanitizers.
#ifndef RAKOVA_SANITIZE

TEST_F(Docs, CommandsOfThePageOnAddingATestMeasureTheExample) {
    const std::vector<std::string> blocks = blocksOf(page, "sh");
    ASSERT_EQ(blocks.size(), 1u);
    // The last command measures; three calls a set keep it free of the questions of accuracy.
    std::string commands = placed(blocks[0]);
    commands.insert(commands.size() - 1, " -dMethod=Manual -dNumLoops=3");
    Outcome outcome = shell("cd '" + source +
                            "' && export CXX='" RAKOVA_CXX "' CMAKE_GENERATOR='" RAKOVA_GENERATOR
                            "' CMAKE_BUILD_TYPE='" RAKOVA_BUILD_TYPE "' && set -e\n{ " +
                            commands + "} 2>&1");
    ASSERT_EQ(outcome.status, 0) << outcome.text();

    Lines sets;
    for (char const *len : {"256", "512", "768", "1024"}) {
        for (char const *mode : {"plain", "absolute"}) {
            sets.push_back(std::string("len=") + len + " mode=" + mode + " ");
        }
    }
    Lines shown;
    for (std::string const &line : outcome.lines) {
        if (line.find("len=") == 0) shown.push_back(line);
    }
    EXPECT_EQ(shown, sets);
    EXPECT_EQ(linesWith(outcome.lines, "| -OK         sum_16s32s ").size(), 1u) << outcome.text();

    const Lines sample = linesIn(blocksOf(page, "").at(0));
    ASSERT_EQ(sample.size(), 2u);
    EXPECT_EQ(sample[0], sets[0]);
    Outcome one = shell(placed("/tmp/sumtest/sumtest -B -L PERF -fsum_ -dlen=256 -dmode=plain 2>&1"));
    Lines result = linesWith(one.lines, "  acc=");
    ASSERT_EQ(result.size(), 1u) << one.text();
    EXPECT_EQ(shapeOf(sample[1]), shapeOf(result[0]));
}

#endif

} // namespace
