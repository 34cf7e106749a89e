// A folder of its own below /tmp for a target that writes files.
#pragma once

#include <filesystem>

#include "bytes.h"

namespace fuzz {

class Sandbox {
public:
    Sandbox()
    {
        char name[] = "/tmp/fuzz-sandbox-XXXXXX";
        expect(mkdtemp(name) != nullptr, "a folder in /tmp");
        folder_ = name;
    }
    Sandbox(const Sandbox &) = delete;
    ~Sandbox() { std::filesystem::remove_all(folder_); }

    const std::filesystem::path &folder() const { return folder_; }

    void empty() const
    {
        for (const auto &entry : std::filesystem::directory_iterator(folder_))
            std::filesystem::remove_all(entry);
    }

private:
    std::filesystem::path folder_;
};

} // namespace fuzz
