// The extractor, beside the test program as it stands beside Tonvista.
#pragma once
#include "core/extractor.h"
#include "tests/support/driver_win.h"

constexpr const char* kExtractorClassKey = "CLSID\\{669B1B7A-3BC7-4466-8B2F-6FC46E6CC031}";

// Its path. Put there once: a library that is in use can't be written over.
inline const std::string& ExtractorBeside() {
    static const std::string s_path = [] {
        char self[MAX_PATH] = "";
        GetModuleFileNameA(nullptr, self, MAX_PATH);
        const std::string program = self;
        const std::string path = program.substr(0, program.rfind('\\') + 1) + kExtractorFile;
        const std::string built = BuildFolder() + "\\" + kExtractorFile;
        return CopyFileA(built.c_str(), path.c_str(), FALSE) ? path : "was not built";
    }();
    return s_path;
}
