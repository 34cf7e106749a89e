// A small control plane: it reads a file of ports, routes and ACL entries, programs them, learns stations
// from digests, forgets those that are silent, and answers on a console.
//
//     control_plane FILE SOCKET
//
// SIGHUP restarts it over a chip that forwards on: the library is taken down, brought up and restored from
// what the driver knows, and its own state is read back. SIGTERM and SIGINT end it.
#include <arpa/inet.h>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <map>
#include <mutex>
#include <sstream>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "console.h"
#include "model.h" // for the record that this driver sends digests in; another driver has its own
#include "pd.h"

// The names of the library are long: what they say is whose they are, which table is meant, and what is done.
#define PD(name) p4_pd_tessel_switch_##name

namespace {

constexpr pd_sess_hdl session = 1;
constexpr u8 device = 0;
constexpr pd_dev_target all_pipes{device, 0xffff};
constexpr u32 station_ttl = 300;

void expect(pd_status status, const std::string &what)
{
    if (status != PD_STATUS_SUCCESS)
        throw std::runtime_error(what + ": status " + std::to_string(status));
}

// ---- The file -------------------------------------------------------------------------------------------

template <typename... Words>
void take(std::istream &line, Words &...words)
{
    std::string more;
    if (!(line >> ... >> words) || line >> more)
        throw std::runtime_error("not as expected");
}

void add_port(std::istream &line)
{
    u16 port = 0, virtual_port = 0;
    take(line, port, virtual_port);
    const PD(ingressPortMapping_match_spec_t) key{.ig_intr_md_ingress_port = port};
    const PD(setPhase0_action_spec_t) names{.action_ingVPort = virtual_port,
                                            .action_nativeAintf = port,
                                            .action_switchPort = 0,
                                            .action_physicalPort = 0};
    pd_entry_hdl entry = 0;
    expect(PD(ingressPortMapping_table_add_with_setPhase0)(session, all_pipes, &key, &names, &entry), "port");
}

void add_route(std::istream &line)
{
    u16 vrf = 0;
    std::string prefix;
    u32 next_hop = 0;
    take(line, vrf, prefix, next_hop);
    const std::size_t slash = prefix.find('/');
    in_addr address{};
    if (slash == std::string::npos || inet_pton(AF_INET, prefix.substr(0, slash).c_str(), &address) != 1)
        throw std::runtime_error(prefix + " is no prefix");
    PD(ipv4ShortMaskLpm_match_spec_t) key{};
    key.l3Info_vrfId = vrf;
    key.ingIpv4_dip = ntohl(address.s_addr);
    key.ingIpv4_dip_prefix_length = static_cast<u16>(std::stoul(prefix.substr(slash + 1)));
    PD(setNextHop_action_spec_t) action{};
    action.action_nextHop = static_cast<decltype(action.action_nextHop)>(next_hop);
    pd_entry_hdl entry = 0;
    expect(PD(ipv4ShortMaskLpm_table_add_with_setNextHop)(session, all_pipes, &key, &action, &entry),
           "route");
}

void add_trap(std::istream &line)
{
    unsigned protocol = 0, reason = 0;
    u16 port = 0;
    take(line, protocol, port, reason);
    PD(trapToCpu_match_spec_t) key{}; // what has no mask may be anything
    key.ingMd_protocol = static_cast<u8>(protocol);
    key.ingMd_protocol_mask = 0xff;
    key.ingMd_dstPort = port;
    key.ingMd_dstPort_mask = 0xffff;
    const PD(trapPacket_action_spec_t) action{.action_cpuReasonCode = static_cast<u8>(reason)};
    const u32 priority = 10;
    pd_entry_hdl entry = 0;
    expect(PD(trapToCpu_table_add_with_trapPacket)(session, all_pipes, &key, priority, &action, &entry),
           "trap");
}

void program(const std::string &name)
{
    static const std::map<std::string, void (*)(std::istream &)> kinds{
        {"port", add_port}, {"route", add_route}, {"trap", add_trap}};
    std::ifstream file{name};
    if (!file)
        throw std::runtime_error(name + " cannot be read");
    std::string text;
    for (int number = 1; std::getline(file, text); ++number) {
        std::istringstream line{text};
        std::string kind;
        if (!(line >> kind) || kind.starts_with('#'))
            continue;
        const auto known = kinds.find(kind);
        try {
            if (known == kinds.end())
                throw std::runtime_error("unknown word " + kind);
            known->second(line);
        } catch (const std::exception &error) {
            throw std::runtime_error(name + ':' + std::to_string(number) + ": " + error.what());
        }
    }
}

// ---- Stations -------------------------------------------------------------------------------------------

// The stations that are known, by the threads of the driver and of this program.
class Stations {
public:
    void start()
    {
        const auto cookie = reinterpret_cast<pd_word>(this);
        const pd_idle_params ageing{1, 0, 0, 0, 0, 0, 0};
        expect(PD(l2LearningLookup_idle_tmo_enable)(session, device, ageing), "ageing");
        expect(PD(l2LearningLookup_idle_register_tmo_cb)(session, device, silent, cookie), "ageing");
        expect(PD(macLearningDigest_register)(session, device, learn, cookie), "digest");
    }

    void stop()
    {
        PD(macLearningDigest_deregister)(session, device);
        PD(l2LearningLookup_idle_register_tmo_cb)(session, device, nullptr, 0);
    }

    // After a restart: what the chip has is what is known.
    void read_back()
    {
        const std::lock_guard lock{mutex_};
        entries_.clear();
        pd_entry_hdl entry = PD_END_OF_WALK;
        expect(PD(l2LearningLookup_get_first_entry_handle)(session, all_pipes, &entry), "walk");
        while (entry != PD_END_OF_WALK) {
            entries_[key_of(entry)] = entry;
            pd_entry_hdl next = PD_END_OF_WALK;
            expect(PD(l2LearningLookup_get_next_entry_handles)(session, all_pipes, entry, 1, &next), "walk");
            entry = next;
        }
    }

    // Silent stations are deleted here, not in the driver's callback.
    void forget_silent()
    {
        const std::lock_guard lock{mutex_};
        for (const pd_entry_hdl entry : silent_) {
            if (std::erase_if(entries_, [&](const auto &known) { return known.second == entry; }) != 0)
                expect(PD(l2LearningLookup_table_delete)(session, device, entry), "forget");
        }
        silent_.clear();
    }

    std::size_t count()
    {
        const std::lock_guard lock{mutex_};
        return entries_.size();
    }

private:
    using Key = std::tuple<u32, u32, u16, u32>; // both halves of the address, domain, interface

    static Key key_of(pd_entry_hdl entry)
    {
        PD(l2LearningLookup_match_spec_t) key{};
        pd_action_out action{};
        char name[P4_PD_TESSEL_SWITCH_ACTION_NAME_BYTES];
        u8 is_default = 0;
        expect(PD(l2LearningLookup_get_entry)(session, device, entry, 0, &key, name, action.parameters.bytes,
                                              &action.action_number, &is_default),
               "read");
        return {key.ingMd_smacOui, key.ingMd_smacStation, key.ingMd_ingL2Domain, key.ingMd_ingL2Aintf};
    }

    // A number of the chip's message, high byte first.
    static u32 number(const u8 *from, std::size_t bytes)
    {
        u32 value = 0;
        for (std::size_t i = 0; i < bytes; ++i)
            value = value << 8 | from[i];
        return value;
    }

    static pd_status learn(pd_sess_hdl from, void *message, pd_word cookie)
    {
        const auto &news = *static_cast<const ts_model_digest_message *>(message);
        for (u32 i = 0; i < news.count; ++i) {
            const u8 *const at = news.entries + std::size_t{i} * news.entry_bytes;
            reinterpret_cast<Stations *>(cookie)->add(
                {number(at, 4), number(at + 4, 4), static_cast<u16>(number(at + 8, 2)), number(at + 10, 4)});
        }
        return PD(macLearningDigest_notify_ack)(from, reinterpret_cast<pd_word>(message));
    }

    void add(const Key &station)
    {
        const std::lock_guard lock{mutex_};
        if (entries_.contains(station))
            return;
        const auto &[oui, low, domain, interface] = station;
        const PD(l2LearningLookup_match_spec_t) key{oui, low, domain, interface};
        pd_entry_hdl entry = 0;
        if (PD(l2LearningLookup_table_add_with_noOp)(session, all_pipes, &key, station_ttl, &entry) == 0)
            entries_[station] = entry;
    }

    static void silent(u32, u32, pd_entry_hdl entry, pd_word cookie)
    {
        auto &stations = *reinterpret_cast<Stations *>(cookie);
        const std::lock_guard lock{stations.mutex_};
        stations.silent_.push_back(entry);
    }

    std::mutex mutex_;
    std::map<Key, pd_entry_hdl> entries_;
    std::vector<pd_entry_hdl> silent_;
};

// ---- The program ----------------------------------------------------------------------------------------

class Console {
public:
    explicit Console(const char *socket) : socket_(socket) { start(); }
    ~Console() { stop(); }

    void start()
    {
        if (const int error = ts_console_serve(socket_, nullptr, &server_))
            throw std::runtime_error(std::string{socket_} + ": " + std::strerror(error));
    }
    void stop() { ts_console_stop(std::exchange(server_, nullptr)); }

private:
    const char *const socket_;
    ts_console_server *server_ = nullptr;
};

// Nobody else may use the library meanwhile.
void restart(Stations &stations, Console &console)
{
    console.stop();
    stations.stop();
    expect(PD(cleanup)(), "end");
    PD(init)();
    expect(PD(restore_virtual_dev_state)(session, device, 0, 0, 0), "restore");
    stations.read_back();
    stations.start();
    console.start();
    std::cout << "restarted, stations: " << stations.count() << std::endl;
}

// Until a signal ends it.
void work(Stations &stations, Console &console, const sigset_t &signals)
{
    for (;;) {
        const timespec second{1, 0};
        const int signal = sigtimedwait(&signals, nullptr, &second);
        if (signal == SIGHUP)
            restart(stations, console);
        else if (signal > 0)
            return;
        stations.forget_silent();
    }
}

void run(const std::string &file, const char *socket)
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGHUP, SIGTERM, SIGINT})
        sigaddset(&signals, signal);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);

    PD(init)();
    program(file);
    Stations stations;
    stations.start();
    Console console{socket};
    std::cout << "ready" << std::endl;
    work(stations, console, signals);
    console.stop();
    stations.stop();
    expect(PD(cleanup)(), "end");
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::cerr << "usage: control_plane FILE SOCKET\n";
        return 2;
    }
    try {
        run(argv[1], argv[2]);
    } catch (const std::exception &error) {
        std::cerr << "control_plane: " << error.what() << '\n';
        return 1;
    }
}
