#include "new_file.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <unistd.h>

namespace shell {

namespace {

constexpr std::size_t buffer_size = 16384;

[[noreturn]] void fail()
{
    throw std::runtime_error(std::strerror(errno));
}

// Does it again when a signal came in between that does not stop the shell.
template <typename Call>
auto done(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR) {
        expect_no_stop_signal();
        result = call();
    }
    if (result < 0)
        fail();
    return result;
}

// What a file that is simply created would allow.
mode_t usual_mode()
{
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

// The name at the end of the links, whether or not there is a file.
std::string behind_links(std::filesystem::path path)
{
    while (std::filesystem::is_symlink(path))
        path = path.parent_path() / std::filesystem::read_symlink(path);
    return path;
}

// A descriptor of the shell's own for this file: opening it anew would begin at its first byte again. -1 for
// none.
int own_output(const struct stat &file)
{
    for (const int descriptor : {STDOUT_FILENO, STDERR_FILENO}) {
        struct stat own;
        if (fstat(descriptor, &own) == 0 && own.st_dev == file.st_dev && own.st_ino == file.st_ino)
            return descriptor;
    }
    return -1;
}

} // namespace

NewFile::Temporary::~Temporary()
{
    if (!name.empty())
        unlink(name.c_str());
}

NewFile::NewFile(const std::string &name)
{
    struct stat found;
    const bool exists = stat(name.c_str(), &found) == 0;
    if (!exists && errno != ENOENT)
        fail();
    if (exists && S_ISDIR(found.st_mode))
        throw std::runtime_error("it is a directory");
    if (const int own = exists ? own_output(found) : -1; own >= 0)
        file_.set(done([&] { return fcntl(own, F_DUPFD_CLOEXEC, 0); }));
    else if (exists && !S_ISREG(found.st_mode))
        file_.set(done([&] { return open(name.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY); }));
    else
        create_beside(behind_links(name), exists ? &found : nullptr);
}

// `replaced`: null where there is no file yet.
void NewFile::create_beside(const std::string &target, const struct stat *replaced)
{
    target_ = target;
    std::string name = target + ".XXXXXX";
    file_.set(done([&] { return mkstemp(name.data()); }));
    temporary_.name = name;
    if (replaced)
        done([&] { return fchown(file_.number(), replaced->st_uid, replaced->st_gid); });
    const mode_t mode = replaced ? replaced->st_mode & 07777 : usual_mode();
    done([&] { return fchmod(file_.number(), mode); });
}

void NewFile::write_line(std::string_view line)
{
    unwritten_.append(line) += '\n';
    if (unwritten_.size() >= buffer_size)
        flush();
}

void NewFile::flush()
{
    for (std::string_view left = unwritten_; !left.empty();)
        left.remove_prefix(
            static_cast<std::size_t>(done([&] { return write(file_.number(), left.data(), left.size()); })));
    unwritten_.clear();
}

void NewFile::commit()
{
    flush();
    if (temporary_.name.empty())
        return;
    done([&] { return fsync(file_.number()); });
    done([&] { return std::rename(temporary_.name.c_str(), target_.c_str()); });
    temporary_.name.clear();
}

} // namespace shell
