// SPDX-License-Identifier: MIT
// Replays kept fuzz inputs through a fuzz target without libFuzzer, so the
// ordinary test builds (release, sanitizers, Windows) run every seed and
// every past crash as a test.
// Usage: <target>_replay DIR_OR_FILE...

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

#if defined(_WIN32)
constexpr const char* kNullDevice = "NUL";
#else
constexpr const char* kNullDevice = "/dev/null";
#endif

std::vector<fs::path> InputsUnder(const fs::path& root) {
    std::vector<fs::path> inputs;
    if (fs::is_regular_file(root)) inputs.push_back(root);
    if (fs::is_directory(root))
        for (const auto& entry : fs::recursive_directory_iterator(root))
            if (entry.is_regular_file() && entry.path().filename().string()[0] != '.') inputs.push_back(entry.path());
    return inputs;
}

void Replay(const fs::path& input) {
    std::ifstream file(input, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    // An empty input still gets a valid pointer, as libFuzzer gives it.
    static const uint8_t kNothing = 0;
    const auto* data = bytes.empty() ? &kNothing : reinterpret_cast<const uint8_t*>(bytes.data());
    LLVMFuzzerTestOneInput(data, bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
    // The library talks on standard output; only the summary matters here.
    if (std::freopen(kNullDevice, "w", stdout) == nullptr) return 2;
    std::size_t replayed = 0;
    for (int i = 1; i < argc; ++i) {
        if (!fs::exists(argv[i])) {
            std::fprintf(stderr, "no such input: %s\n", argv[i]);
            return 1;
        }
        for (const fs::path& input : InputsUnder(argv[i])) {
            Replay(input);
            ++replayed;
        }
    }
    std::fprintf(stderr, "replayed %zu inputs\n", replayed);
    return 0;
}
