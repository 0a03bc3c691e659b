// See harness.h.
#include "tests/program/harness.h"

namespace {
class Installation : public testing::Environment {
public:
    void SetUp() override { ASSERT_TRUE(InstallProgram(BuildFolder())) << BuildFolder(); }
};
} // namespace

static testing::Environment* const s_installation =
    testing::AddGlobalTestEnvironment(new Installation);

void ProgramTest::SetUp() {
    FreshSettings();
    ASSERT_FALSE(FindConsole()) << "a program of an earlier test still runs";
}

void ProgramTest::TearDown() {
    if (program && program->Runs()) Close();
    delete program;
    program = nullptr;
}

void ProgramTest::Start(const std::string& arguments) {
    constexpr uint32_t kNotYetStarted =
        2; // as good as 1; the program leaves 1 when all is restored
    if (ReadLastOk()) WriteLastOk(kNotYetStarted);
    delete program;
    program = new Process(arguments);
    ASSERT_TRUE(program->handle) << ProgramPath();
    ASSERT_TRUE(WaitUntil([] { return FindConsole() != nullptr; })) << "no console came up";
    ASSERT_TRUE(WaitUntil([] { return ReadLastOk() == 1; })) << "components are not restored";
}

int ProgramTest::Close() {
    if (HWND console = FindConsole()) Command(console, kConsoleClose);
    return program ? program->WaitEnd(15000) : -1;
}
