// A file that is written under a name. A regular one appears there when it is whole, and not at all
// otherwise: it is written beside the name under one of its own, and renamed at the end, with mode and owner
// of the file that it replaces. What is no regular file is written straight into, and so is what the shell's
// own output goes to.
#pragma once

#include <string>
#include <string_view>
#include <sys/stat.h>

#include "descriptor.h"
#include "line_sink.h"
#include "signals.h"

namespace shell {

class NewFile : public LineSink {
public:
    // Follows symbolic links. Throws std::runtime_error, as do write_line() and commit(), or Interrupted.
    explicit NewFile(const std::string &name);
    NewFile(const NewFile &) = delete;
    NewFile &operator=(const NewFile &) = delete;

    void write_line(std::string_view line) override;
    void commit();

private:
    // Deletes the file, unless the name is empty.
    struct Temporary {
        std::string name;
        ~Temporary();
    };

    void create_beside(const std::string &target, const struct stat *replaced);
    void flush();

    const IgnoredSignal broken_pipe_{SIGPIPE}; // it makes writing fail, which is told
    std::string target_;
    Temporary temporary_;
    Descriptor file_;
    std::string unwritten_;
};

} // namespace shell
