// Records of the tap for what reads them: files of any bytes, and well-formed files whose calls may hold
// anything.
#include <fstream>
#include <vector>

#include "explain.h"
#include "explain_c.h"
#include "model.h"
#include "replay.h"
#include "sandbox.h"

namespace {

using Bytes = std::vector<u8>;

void append(Bytes &to, const void *from, std::size_t size)
{
    const auto *begin = static_cast<const u8 *>(from);
    to.insert(to.end(), begin, begin + size);
}

tap::CallHeader take_call(fuzz::Bytes &in, std::size_t at)
{
    tap::CallHeader call{};
    call.position = at;
    call.operation = static_cast<u16>(in.take<u16>() % tap::operation_count);
    call.flags = in.take();
    call.length = static_cast<u32>(sizeof call) + in.take() * 8u;
    return call;
}

// A file with whole calls one behind the other.
Bytes well_formed(fuzz::Bytes in, std::size_t &calls)
{
    Bytes file(tap::file_header_bytes);
    tap::FileHeader header{};
    std::copy(std::begin(tap::file_magic), std::end(tap::file_magic), header.magic);
    header.version = tap::file_version;
    header.header_bytes = tap::file_header_bytes;
    header.capacity = u64{1} << 20;
    header.operations = tap::operations_fingerprint();
    for (calls = 0; !in.rest().empty() && calls < 64; ++calls) {
        tap::CallHeader call = take_call(in, file.size() - tap::file_header_bytes);
        const std::size_t begin = file.size();
        append(file, &call, sizeof call);
        file.resize(begin + call.length);
        in.take_into(file.data() + begin + sizeof call, call.length - sizeof call);
        call.checksum = tap::checksum_of(file.data() + begin, call.length);
        std::memcpy(file.data() + begin, &call, sizeof call);
    }
    header.head = file.size() - tap::file_header_bytes;
    std::memcpy(file.data(), static_cast<const void *>(&header), sizeof header);
    return file;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const fuzz::Sandbox sandbox;
    const std::string path = sandbox.folder() / "record";
    fuzz::Bytes in{data, size};
    const bool whole = in.take() % 2 == 0;
    std::size_t calls = 0;
    Bytes bytes;
    if (whole)
        bytes = well_formed(in, calls);
    else
        append(bytes, in.rest().data(), in.rest().size());
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));

    std::string error;
    const auto record = tap::RecordReader::open(path, error);
    fuzz::expect(record || error.find('\n') == std::string::npos, "one line of what is wrong");
    fuzz::expect(!whole || (record && record->calls().size() == calls), "all whole calls");
    shell::Replay replay;
    shell::Explainer explainer;
    shell::CProgram program;
    for (std::size_t at = 0; record && at < record->calls().size(); ++at) {
        fuzz::expect(!tap::line_of(record->calls()[at]).empty(), "a line");
        replay.play(record->calls()[at]);
        const std::string command = explainer.command(record->calls()[at]);
        fuzz::expect(command.find('\n') == std::string::npos, "a command is a line");
        program.keep(record->calls()[at]);
        fuzz::expect(command.empty() || !program.statement(record->calls()[at]).empty(), "a statement");
    }
    ts_model_reset();
    return 0;
}
