// Hands the files that the command line names, or those in the folders it names, to a target: what a fuzzer
// does with its corpus, for compilers that have none.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "bytes.h"

namespace fs = std::filesystem;

int main(int argc, char **argv)
{
    std::set<fs::path> files;
    for (int i = 1; i < argc; ++i)
        if (fs::is_directory(argv[i]))
            files.insert(fs::directory_iterator(argv[i]), {});
        else
            files.insert(argv[i]);
    std::set<std::pair<fs::path, std::string>> inputs; // read first: a target may leave the folder
    for (const fs::path &file : files) {
        std::ifstream in(file, std::ios::binary);
        inputs.emplace(file, std::string{std::istreambuf_iterator<char>(in), {}});
    }
    for (const auto &[file, text] : inputs) {
        std::printf("%s\n", file.c_str());
        std::fflush(stdout);
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(text.data()), text.size());
    }
    return inputs.empty();
}
