#include "new_file.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace shell {

namespace {

// What a file that is simply created would allow.
mode_t usual_mode()
{
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

} // namespace

NewFile::NewFile(const std::string &name) : name_(name), temporary_name_(name + ".XXXXXX")
{
    if (std::filesystem::is_directory(name))
        throw std::runtime_error("it is a directory");
    const int descriptor = mkstemp(temporary_name_.data());
    if (descriptor < 0)
        fail();
    fchmod(descriptor, usual_mode());
    file_ = fdopen(descriptor, "w");
    if (!file_) {
        close(descriptor);
        unlink(temporary_name_.c_str());
        fail();
    }
}

NewFile::~NewFile()
{
    if (file_)
        std::fclose(file_);
    if (!temporary_name_.empty())
        unlink(temporary_name_.c_str());
}

void NewFile::write_line(std::string_view line)
{
    if (std::fwrite(line.data(), 1, line.size(), file_) != line.size() || std::fputc('\n', file_) == EOF)
        fail();
}

void NewFile::commit()
{
    if (std::fflush(file_) != 0 || fsync(fileno(file_)) != 0)
        fail();
    if (std::rename(temporary_name_.c_str(), name_.c_str()) != 0)
        fail();
    temporary_name_.clear();
}

void NewFile::fail()
{
    throw std::runtime_error(std::strerror(errno));
}

} // namespace shell
