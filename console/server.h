// Answers clients on a Unix socket, from one thread. Commands are carried out one by one; between their steps
// the sockets are looked after and the process's own threads get their turn.
#pragma once

#include <atomic>
#include <chrono>
#include <list>
#include <optional>
#include <sys/types.h>
#include <thread>

#include "connection.h"
#include "descriptor.h"

namespace console {

class Server {
public:
    // Throws std::system_error.
    Server(const std::string &path, const ts_console_server_options &options);
    ~Server();
    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

private:
    using Clock = std::chrono::steady_clock;

    struct Client {
        Client(int socket, const ts_console_options &options, std::function<bool()> step)
            : fd(socket), connection(options, std::move(step))
        {
        }

        const shell::Descriptor fd;
        Connection connection;
        Clock::time_point moved = Clock::now(); // when it last took bytes, or had none to take
        bool gone = false;
    };

    void listen_at();
    void run();
    void answer_clients();
    bool step();
    void look_after_sockets(std::chrono::milliseconds wait);
    void accept_client();
    bool may_connect(int socket) const;
    static void receive(Client &client);
    static void send(Client &client);

    const std::string path_;
    ts_console_options options_;
    const std::size_t most_clients_;
    std::optional<gid_t> group_;
    shell::Descriptor listener_, wake_;
    std::list<Client> clients_;
    Client *answered_ = nullptr; // whose command is being carried out
    Clock::time_point rested_{}, refused_{};
    std::atomic<bool> stopping_ = false;
    std::thread thread_;
};

} // namespace console
