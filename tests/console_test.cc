// Consoles in this process: what commands give and what is refused, the bounds, and a server whose clients
// send rubbish, vanish, stop reading or come all at once while the process writes.
#include <gtest/gtest.h>

#include <filesystem>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>

#include "console.h"
#include "folder.h"
#include "model.h"
#include "pd.h"
#include "protocol.h"

namespace {

using console::Frame;
using console::Kind;

constexpr pd_sess_hdl session = 1;
constexpr pd_dev_target target{0, 0xffff};

class ConsoleTest : public testing::Test {
protected:
    ConsoleTest()
    {
        ts_model_reset();
        p4_pd_tessel_switch_init();
    }
    ~ConsoleTest() override
    {
        EXPECT_EQ(p4_pd_tessel_switch_cleanup(), 0u); // no console has done so
        ts_model_reset();
    }

    static void add_host(u32 address)
    {
        const p4_pd_tessel_switch_ipv4Host_match_spec_t key{.l3Info_vrfId = 1, .ingIpv4_dip = address};
        const p4_pd_tessel_switch_setNextHop_action_spec_t next_hop{.action_nextHop = 7};
        pd_entry_hdl entry = 0;
        ASSERT_EQ(
            p4_pd_tessel_switch_ipv4Host_table_add_with_setNextHop(session, target, &key, &next_hop, &entry),
            0u);
    }
};

class Opened {
public:
    explicit Opened(const ts_console_options &options = {})
    {
        EXPECT_EQ(ts_console_open(&options, &console_), 0);
    }
    ~Opened() { ts_console_close(console_); }

    std::string run(const std::string &command, unsigned form = 0)
    {
        ts_console_answer answer{};
        EXPECT_EQ(ts_console_run(console_, command.c_str(), form, &answer), 0);
        status = answer.status;
        return std::string{answer.output, answer.output_bytes} + answer.messages;
    }

    int status = 0;

private:
    ts_console *console_ = nullptr;
};

TEST_F(ConsoleTest, CarriesCommandsOutInAProcessThatGoesOn)
{
    add_host(0x01020304);
    Opened console;
    EXPECT_EQ(console.run("count ipv4Host"), "       1  ipv4Host\n");
    EXPECT_EQ(console.run("add ipv4Host vrfId=1 dip=1.2.3.5 : \\\n setNextHop nextHop=8", TS_CONSOLE_VERBOSE),
              "entry 2\n");
    EXPECT_EQ(console.run("count ipv4Host", TS_CONSOLE_JSON), "{\"table\":\"ipv4Host\",\"entries\":2}\n");
    EXPECT_EQ(console.status, TS_CONSOLE_DONE);
    EXPECT_EQ(console.run("count bogus"), "column 7: unknown table 'bogus'; tables lists them\n");
    EXPECT_EQ(console.status, TS_CONSOLE_BAD);
    EXPECT_EQ(console.run("lookup ipv4Host vrfId=1 dip=1.2.3.5"),
              "entry 2: setNextHop nextHop=8 (an exact match)\n");
    EXPECT_EQ(console.run("quit"), "");
    EXPECT_EQ(console.status, TS_CONSOLE_QUIT);
}

TEST_F(ConsoleTest, RefusesWhatIsTheControlPlanesOrTheClients)
{
    Opened console;
    for (const char *command :
         {"watch ipv4Host", "digest watch macLearningDigest", "idle enable l2LearningLookup", "--c count",
          "load /nowhere/script", "save /tmp/ts_console_is_to_write_no_file"})
        EXPECT_NE(console.run(command).find("not in the console of a process"), std::string::npos) << command;
    EXPECT_FALSE(std::filesystem::exists("/tmp/ts_console_is_to_write_no_file"));
    EXPECT_EQ(console.run("trace on"), "column 1: this needs the tap, which is not in this process\n");
    EXPECT_EQ(console.run("record on"), "this needs the tap, which is not in this process\n");
}

TEST_F(ConsoleTest, OnlyReadsWhenToldSo)
{
    add_host(0x01020304);
    ts_console_options options{};
    options.read_only = 1;
    Opened console{options};
    for (const char *command : {"add ipv4Host vrfId=1 dip=9.9.9.9 : setNextHop nextHop=1",
                                "delete ipv4Host 1",
                                "default ipv4Host : onMiss",
                                "lookup ipv4Host vrfId=1 dip=1.2.3.4 packets=1",
                                "member add lagPortActionProfile : setLagPort egrL2AintfPort=1",
                                "restart",
                                "clock 1",
                                "modify ipv4Host 1 : onMiss",
                                "reset ipv4Host",
                                "group create lagPortActionProfile",
                                "property ipv4Host 1 2",
                                "meter adjust pdpMeter 1",
                                "register fill x 1",
                                "idle ttl l2LearningLookup 1 ttl=5",
                                "hash seed x 1",
                                "pvs add x key=1",
                                "corrupt ipv4Host 1 : missing",
                                "counter write x 1 : packets=1",
                                "digest timeout 5",
                                "snapshot create ingress",
                                "trace on",
                                "record on"})
        EXPECT_NE(console.run(command).find("this console only reads"), std::string::npos) << command;
    for (const char *command :
         {"show ipv4Host", "lookup ipv4Host vrfId=1 dip=1.2.3.4", "default ipv4Host", "count", "tables",
          "diff ipv4Host", "save - ipv4Host", "digest timeout", "entry ipv4Host 1"}) {
        console.run(command);
        EXPECT_EQ(console.status, TS_CONSOLE_DONE) << command;
    }
}

TEST_F(ConsoleTest, KeepsToItsBoundsAndEndsWhenAsked)
{
    for (u32 i = 0; i < 100; ++i)
        add_host(i);
    ts_console_options options{};
    options.line_bytes = 100;
    options.answer_bytes = 200;
    Opened small{options};
    EXPECT_EQ(small.run("echo " + std::string(96, 'x')), "a command has 100 bytes at most\n");
    EXPECT_EQ(small.run("echo " + std::string(95, 'x')), std::string(95, 'x') + "\n");
    const std::string cut = small.run("show ipv4Host");
    EXPECT_EQ(cut.substr(200), "column 1: the answer is cut after 200 bytes\n");
    EXPECT_EQ(small.status, TS_CONSOLE_BAD);
    small.run("count ipv4Host");
    EXPECT_EQ(small.status, TS_CONSOLE_DONE);

    int steps = 0;
    options = {};
    options.between_steps = [](void *count) { return ++*static_cast<int *>(count) > 10 ? 1 : 0; };
    options.cookie = &steps;
    Opened asked{options};
    EXPECT_NE(asked.run("show ipv4Host").find("interrupted"), std::string::npos);
    EXPECT_EQ(steps, 11);
}

// ---- The server -----------------------------------------------------------------------------------------

class Client {
public:
    explicit Client(const std::string &path) : socket_(socket(AF_UNIX, SOCK_STREAM, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, path.size());
        EXPECT_EQ(connect(socket_, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
        EXPECT_EQ(next(Kind::hello), console::greeting);
    }
    ~Client() { close(socket_); }

    void send(std::string_view bytes)
    {
        EXPECT_EQ(::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(bytes.size()));
    }
    void send(Kind kind, std::string_view body)
    {
        std::string frame;
        console::append_frame(frame, kind, body);
        send(frame);
    }
    void begin(std::string_view command) { send(Kind::run, console::body_of({0, 0, {}, command})); }

    // The bodies of all frames up to the first of this kind; "gone" when the server ends the connection.
    std::string next(Kind kind)
    {
        std::string bodies;
        for (;;) {
            while (const auto frame = console::first_frame(in_)) {
                bodies += frame->body;
                const bool last = frame->kind == kind;
                in_.erase(0, console::frame_head_bytes + frame->body.size());
                if (last)
                    return bodies;
            }
            char bytes[4096];
            const ssize_t size = recv(socket_, bytes, sizeof bytes, 0);
            if (size <= 0)
                return bodies + "gone";
            in_.append(bytes, static_cast<std::size_t>(size));
        }
    }
    std::string run(std::string_view command)
    {
        begin(command);
        return next(Kind::done);
    }

private:
    const int socket_;
    std::string in_;
};

class ConsoleServerTest : public ConsoleTest {
protected:
    ConsoleServerTest() { EXPECT_EQ(ts_console_serve(path_.c_str(), nullptr, &server_), 0); }
    ~ConsoleServerTest() override
    {
        ts_console_stop(server_);
        EXPECT_TRUE(std::filesystem::is_empty(folder_.path));
    }

    const Folder folder_;
    const std::string path_ = folder_.file("socket");
    ts_console_server *server_ = nullptr;
};

const std::string one_host = std::string("       1  ipv4Host\n") + '\0';

TEST_F(ConsoleServerTest, KeepsItsSocketToItself)
{
    struct stat found {};
    ASSERT_EQ(stat(path_.c_str(), &found), 0);
    EXPECT_EQ(found.st_mode, mode_t{S_IFSOCK | 0600});
    EXPECT_EQ(ts_console_serve(path_.c_str(), nullptr, nullptr), EADDRINUSE);
    const std::string file = folder_.write("file", "kept"); // of the test's own: a fault may remove it
    EXPECT_EQ(ts_console_serve(file.c_str(), nullptr, nullptr), EADDRINUSE);
    EXPECT_EQ(folder_.read("file"), "kept");
    std::filesystem::remove(file);
    EXPECT_EQ(ts_console_serve(std::string(200, 'x').c_str(), nullptr, nullptr), ENAMETOOLONG);
    EXPECT_EQ(ts_console_serve("/nowhere/socket", nullptr, nullptr), ENOENT);
    ts_console_stop(server_);

    const int left_over = socket(AF_UNIX, SOCK_STREAM, 0); // as by a process that was killed
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path_.copy(address.sun_path, path_.size());
    ASSERT_EQ(bind(left_over, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    close(left_over);
    EXPECT_EQ(ts_console_serve(path_.c_str(), nullptr, &server_), 0);
    EXPECT_EQ(Client{path_}.run("count"), std::string("       0  in all\n") + '\0');
}

TEST_F(ConsoleServerTest, OutlivesItsClients)
{
    add_host(1);
    Client silent{path_}, other{path_};
    { // Vanishes while its command runs, with a frame begun.
        Client client{path_};
        client.begin("tables");
        client.send("r");
    }
    for (const Kind kind : {Kind{'?'}, Kind::run}) { // No frame of any kind, and a command without its place.
        Client client{path_};
        client.send(kind, "rubbish");
        EXPECT_EQ(client.next(Kind::done), "this is no request\ngone");
    }
    { // A frame that would not end.
        Client client{path_};
        client.send(std::string_view{"r\xff\xff\xff\xff", 5});
        EXPECT_EQ(client.next(Kind::done), "a frame is too long\ngone");
    }
    { // Asks for more than the socket holds and does not read it.
        Client client{path_};
        for (int i = 0; i < 300; ++i)
            client.begin("help");
        EXPECT_EQ(other.run("count ipv4Host"), one_host);
        for (int i = 0; i < 300; ++i)
            EXPECT_NE(client.next(Kind::done).find("describe"), std::string::npos);
    }
    other.send(Kind::complete, "describe ipv4Ho");
    EXPECT_EQ(other.next(Kind::candidates), "ipv4Host\n");
    other.send(Kind::cancel, ""); // which comes too late
    EXPECT_EQ(other.run("count ipv4Host"), one_host);
    EXPECT_EQ(silent.run("count ipv4Host"), one_host);
}

TEST_F(ConsoleServerTest, EndsACommandThatIsCancelled)
{
    for (u32 i = 0; i < 20000; ++i)
        add_host(i);
    Client client{path_};
    client.begin("diff ipv4Host");
    client.send(Kind::cancel, "");
    EXPECT_EQ(client.next(Kind::done), std::string("column 1: interrupted\n") + '\1');
    EXPECT_EQ(client.run("echo on"), std::string("on\n") + '\0');
}

TEST_F(ConsoleServerTest, AnswersManyClientsWhileTheProcessWrites)
{
    constexpr u32 client_count = 8, per_client = 100;
    constexpr u32 written = 5000;
    std::thread writer{[&] {
        for (u32 i = 0; i < written; ++i)
            add_host(0x10000000 + i);
    }};
    std::vector<std::thread> clients;
    for (u32 i = 0; i < client_count; ++i)
        clients.emplace_back([&, i] {
            Client client{path_};
            for (u32 at = 0; at < per_client; ++at) {
                const std::string dip = std::to_string(i) + ".0.0." + std::to_string(at);
                ASSERT_EQ(client.run("add ipv4Host vrfId=2 dip=" + dip + " : setNextHop nextHop=1"),
                          std::string(1, '\0'));
            }
            EXPECT_EQ(client.run("find ipv4Host vrfId=3 dip=0.0.0.0").back(), '\1');
        });
    for (std::thread &client : clients)
        client.join();
    writer.join();
    u32 count = 0;
    EXPECT_EQ(p4_pd_tessel_switch_ipv4Host_get_entry_count(session, target, &count), 0u);
    EXPECT_EQ(count, written + client_count * per_client);
}

} // namespace
