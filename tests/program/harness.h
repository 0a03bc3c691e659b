// The fixture of all tests that drive the real program. See driver_win.h for what they drive it
// with.
#pragma once
#include "tests/support/driver_win.h"

#include <gtest/gtest.h>

// Every test starts with fresh settings and leaves no program behind.
class ProgramTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
    // Starts the program and waits for its console.
    void Start(const std::string& arguments = "");
    // Closes it as a user would and waits for its end; the exit code.
    int Close();
    Process* program = nullptr;
};
