// Runs a fuzz target over stored inputs: files, or all files of folders.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace {

int RunFile(std::filesystem::path const &path) {
    std::ifstream stream(path, std::ios::binary);
    std::string const bytes(std::istreambuf_iterator<char>(stream), {});
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
    return 1;
}

int Run(std::filesystem::path const &path) {
    if (!std::filesystem::is_directory(path)) {
        return RunFile(path);
    }
    int count = 0;
    for (auto const &entry : std::filesystem::directory_iterator(path)) {
        count += RunFile(entry.path());
    }
    return count;
}

} // namespace

int main(int count, char **arguments) {
    int inputs = 0;
    for (int i = 1; i < count; ++i) {
        inputs += Run(arguments[i]);
    }
    std::printf("%d inputs\n", inputs);
    return inputs > 0 ? 0 : 1;
}
