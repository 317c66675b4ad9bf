#pragma once

#include "Support/TempTree.h"
#include "System/ProcessRunner.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace brellin::test {

/// Runs the real program in an account of its own, whose home is the tree.
class ProgramTest : public testing::Test {
protected:
    ProgramTest()
    {
        ::setenv("HOME", tree.root().c_str(), 1);
        for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
            ::unsetenv(variable);
    }
    ProcessOutput run(std::vector<std::string> words)
    {
        const Result<ProcessOutput> output = runner.run({BRELLIN_PROGRAM, std::move(words), {}, {}}, nullptr);
        EXPECT_TRUE(output) << output.error().message.toStdString();
        return output.value_or(ProcessOutput{});
    }

    TempTree tree;
    SystemProcessRunner runner;
};

} // namespace brellin::test
