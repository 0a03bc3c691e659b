// Runs a fuzz target over the files and folders given on the command line: the seed corpus as a
// regression test, under the same sanitizers as the native tests.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

static int s_runs;

static void RunFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)), {});
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    ++s_runs;
}

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (!std::filesystem::is_directory(argv[i])) {
            RunFile(argv[i]);
            continue;
        }
        for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i])) {
            if (entry.is_regular_file()) RunFile(entry.path());
        }
    }
    std::printf("%d inputs replayed\n", s_runs);
    return s_runs > 0 ? 0 : 1;
}
