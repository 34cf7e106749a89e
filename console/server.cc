#include "server.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <grp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <system_error>

namespace console {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t default_clients = 64;
constexpr auto longest_stall = 30s;       // of a client that does not take its answer
constexpr auto work = 200us, rest = 50us; // of a long command in turn
constexpr auto refusal_pause = 1s;        // after the process could not take a client

[[noreturn]] void fail(int error)
{
    throw std::system_error{error, std::generic_category()};
}

int checked(int result)
{
    if (result < 0)
        fail(errno);
    return result;
}

sockaddr_un address_of(const std::string &path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof address.sun_path)
        fail(ENAMETOOLONG);
    path.copy(address.sun_path, path.size());
    return address;
}

int new_socket()
{
    return checked(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

// A socket that nobody answers on makes room; anything else stays.
void remove_stale(const std::string &path, const sockaddr_un &address)
{
    struct stat found {};
    if (lstat(path.c_str(), &found) != 0)
        return;
    const shell::Descriptor probe{new_socket()};
    const bool stale =
        S_ISSOCK(found.st_mode) &&
        connect(probe.number(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 &&
        errno == ECONNREFUSED;
    if (!stale)
        fail(EADDRINUSE);
    unlink(path.c_str());
}

gid_t group_named(const char *name)
{
    group entry{}, *found = nullptr;
    std::vector<char> room(65536);
    if (const int error = getgrnam_r(name, &entry, room.data(), room.size(), &found))
        fail(error);
    if (!found)
        fail(ENOENT);
    return entry.gr_gid;
}

bool is_in_group(int socket, gid_t group, gid_t primary)
{
    std::vector<gid_t> groups(65536 / sizeof(gid_t));
    socklen_t size = static_cast<socklen_t>(groups.size() * sizeof(gid_t));
    if (getsockopt(socket, SOL_SOCKET, SO_PEERGROUPS, groups.data(), &size) != 0)
        size = 0;
    groups.resize(size / sizeof(gid_t));
    return primary == group || std::ranges::find(groups, group) != groups.end();
}

} // namespace

Server::Server(const std::string &path, const ts_console_server_options &options)
    : path_(path), options_(options.console),
      most_clients_(options.clients ? options.clients : default_clients)
{
    options_.between_steps = nullptr;
    if (options.group)
        group_ = group_named(options.group);
    wake_.set(checked(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)));
    listen_at();
    sigset_t all, before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before); // which the thread takes over
    try {
        thread_ = std::thread{[this] { run(); }};
    } catch (...) {
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        unlink(path_.c_str());
        throw;
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

Server::~Server()
{
    stopping_ = true;
    eventfd_write(wake_.number(), 1);
    thread_.join();
    unlink(path_.c_str());
}

// The mode is set before the name exists, so that nobody else gets in meanwhile.
void Server::listen_at()
{
    const sockaddr_un address = address_of(path_);
    remove_stale(path_, address);
    listener_.set(new_socket());
    checked(fchmod(listener_.number(), 0600));
    checked(bind(listener_.number(), reinterpret_cast<const sockaddr *>(&address), sizeof address));
    if (group_) {
        checked(chown(path_.c_str(), static_cast<uid_t>(-1), *group_));
        checked(chmod(path_.c_str(), 0660));
    }
    checked(listen(listener_.number(), SOMAXCONN));
}

void Server::run()
{
    while (!stopping_) {
        try {
            const bool busy = std::ranges::any_of(
                clients_, [](const Client &client) { return client.connection.can_answer(); });
            look_after_sockets(busy ? 0ms : -1ms);
            answer_clients();
        } catch (const std::bad_alloc &) {
            clients_.remove_if([this](const Client &client) { return client.gone || &client == answered_; });
            answered_ = nullptr;
        }
        clients_.remove_if([](const Client &client) {
            return client.gone || (client.connection.ended() && client.connection.unsent().empty());
        });
    }
}

// One command of each client in turn.
void Server::answer_clients()
{
    for (Client &client : clients_) {
        if (stopping_ || client.gone || !client.connection.can_answer())
            continue;
        answered_ = &client;
        rested_ = Clock::now();
        client.connection.answer();
        answered_ = nullptr;
        client.moved = Clock::now();
        send(client);
        std::this_thread::yield();
    }
}

// Between two steps of a command: true ends it.
bool Server::step()
{
    if (Clock::now() - rested_ < work)
        return false;
    look_after_sockets(0ms);
    std::this_thread::sleep_for(rest);
    rested_ = Clock::now();
    return stopping_ || answered_->gone || answered_->connection.take_cancel();
}

// Takes clients and what they send, and sends what they get; waits for such work, for ever if `wait` is below
// 0.
void Server::look_after_sockets(std::chrono::milliseconds wait)
{
    const bool takes_clients = Clock::now() - refused_ > refusal_pause;
    std::vector<pollfd> polled{{wake_.number(), POLLIN, 0},
                               {takes_clients ? listener_.number() : -1, POLLIN, 0}};
    std::vector<Client *> clients;
    bool limited = !takes_clients;
    for (Client &client : clients_) {
        const bool unsent = !client.connection.unsent().empty();
        const int events = (client.connection.room() ? POLLIN : 0) | (unsent ? POLLOUT : 0);
        limited = limited || unsent;
        polled.push_back({client.gone ? -1 : client.fd.number(), static_cast<short>(events), 0});
        clients.push_back(&client);
    }
    if (poll(polled.data(), polled.size(), static_cast<int>(wait < 0ms && limited ? 1000 : wait.count())) < 0)
        return;
    for (std::size_t i = 0; i < clients.size(); ++i) {
        const short events = polled[i + 2].revents;
        if (events & (POLLIN | POLLHUP | POLLERR))
            receive(*clients[i]);
        if (events & POLLOUT)
            send(*clients[i]);
        if (!clients[i]->connection.unsent().empty() && Clock::now() - clients[i]->moved > longest_stall)
            clients[i]->gone = true;
    }
    if (polled[1].revents & POLLIN)
        accept_client();
}

void Server::accept_client()
{
    const int socket = accept4(listener_.number(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (socket < 0) {
        if (errno != EAGAIN && errno != EINTR && errno != ECONNABORTED)
            refused_ = Clock::now();
        return;
    }
    const char *refusal = !may_connect(socket)               ? "this console is for others\n"
                          : clients_.size() >= most_clients_ ? "this console has no room for more clients\n"
                                                             : nullptr;
    if (!refusal) {
        clients_.emplace_back(socket, options_, [this] { return step(); });
        return;
    }
    const shell::Descriptor closed{socket};
    std::string frame;
    append_frame(frame, Kind::messages, refusal);
    ::send(socket, frame.data(), frame.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
}

bool Server::may_connect(int socket) const
{
    ucred peer{};
    socklen_t size = sizeof peer;
    if (getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0)
        return false;
    return peer.uid == 0 || peer.uid == geteuid() || (group_ && is_in_group(socket, *group_, peer.gid));
}

void Server::receive(Client &client)
{
    char bytes[16384];
    const std::size_t room = std::min(sizeof bytes, client.connection.room());
    // Without room, only that the client is gone can be found out.
    const ssize_t size = recv(client.fd.number(), bytes, std::max<std::size_t>(room, 1),
                              MSG_DONTWAIT | (room == 0 ? MSG_PEEK : 0));
    if (size > 0 && room != 0)
        client.connection.receive({bytes, static_cast<std::size_t>(size)});
    else if (size == 0 || (size < 0 && errno != EAGAIN && errno != EINTR))
        client.gone = true;
}

void Server::send(Client &client)
{
    const std::string_view unsent = client.connection.unsent();
    if (unsent.empty())
        return;
    const ssize_t size =
        ::send(client.fd.number(), unsent.data(), unsent.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (size > 0) {
        client.connection.sent(static_cast<std::size_t>(size));
        client.moved = Clock::now();
    } else if (errno != EAGAIN && errno != EINTR) {
        client.gone = true;
    }
}

} // namespace console
