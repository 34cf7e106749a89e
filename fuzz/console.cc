// What a client of the console sends: any bytes, or whole frames with any bodies, in pieces.
#include "bytes.h"
#include "connection.h"
#include "model.h"
#include "pd.h"

namespace {

constexpr console::Kind kinds[] = {console::Kind::run, console::Kind::complete, console::Kind::cancel,
                                   console::Kind::output};

// In frames where the first byte is even.
std::string stream_of(fuzz::Bytes in)
{
    std::string stream;
    if (in.take() % 2 != 0) {
        stream = in.rest();
        return stream;
    }
    const console::Kind kind = kinds[in.take() % std::size(kinds)];
    const unsigned form = in.take();
    const std::string_view rest = in.rest();
    console::append_frame(stream, kind, console::body_of({form, 0, {}, rest}));
    console::append_frame(stream, console::Kind::run, rest);
    return stream;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    ts_model_reset();
    ts_model_set_log([](int, int, const char *, void *) {}, nullptr);
    p4_pd_tessel_switch_init();
    ts_console_options options{};
    options.answer_bytes = 10000;
    {
        console::Connection connection{options, {}};
        const std::string stream = stream_of({data, size});
        for (std::string_view left = stream; !left.empty() && !connection.ended();) {
            const std::size_t piece = std::min(left.size(), connection.room());
            connection.receive(left.substr(0, piece));
            left.remove_prefix(piece);
            connection.take_cancel();
            connection.sent(connection.unsent().size());
            if (!connection.can_answer() && piece == 0)
                fuzz::expect(false, "room for more, or a frame to answer");
            if (connection.can_answer())
                connection.answer();
            fuzz::expect(connection.unsent().size() < 200000, "an answer within its bounds");
        }
    }
    p4_pd_tessel_switch_cleanup();
    return 0;
}
