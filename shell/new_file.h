// A file that appears under its name when it is whole, and not at all otherwise: it is written beside it
// under a name of its own, and renamed at the end.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace shell {

class NewFile {
public:
    // Throws std::runtime_error, as do write() and commit().
    explicit NewFile(const std::string &name);
    ~NewFile();
    NewFile(const NewFile &) = delete;
    NewFile &operator=(const NewFile &) = delete;

    void write_line(std::string_view line);
    void commit();

private:
    [[noreturn]] static void fail();

    const std::string name_;
    std::string temporary_name_;
    std::FILE *file_ = nullptr;
};

} // namespace shell
