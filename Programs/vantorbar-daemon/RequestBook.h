#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "Programs/vantorbar-daemon/ProcessMeter.h"

namespace vantor {

/// Who asks for what: clients, each with so many running requests of a key, and with its wish for
/// the hierarchy. What somebody asks who isn't a client changes nothing.
class RequestBook {
public:
    static constexpr std::size_t kClientsOfUser = 8;

    /// False, and nobody is added, where the user has as many clients as one may have.
    [[nodiscard]] bool add(const std::string& client, std::uint32_t user);
    void remove(std::string_view client);
    bool has(std::string_view client) const noexcept { return clients_.contains(client); }
    bool isEmpty() const noexcept { return clients_.empty(); }

    void setHierarchy(std::string_view client, Hierarchy hierarchy);
    /// Whether it is the first of the client's running requests of that key.
    bool start(std::string_view client, std::int64_t key);
    /// One that isn't running is ignored.
    void stop(std::string_view client, std::int64_t key);

    bool isAsked(std::int64_t key) const noexcept;
    bool asks(std::string_view client, std::int64_t key) const noexcept;
    Hierarchy hierarchy(std::string_view client) const noexcept;
    /// Calls `visit` with the name of each client that asks; it may change nothing here.
    template <class Visit>
    void forEachAsking(std::int64_t key, Visit&& visit) const {
        for (const auto& [name, client] : clients_)
            if (client.requests.contains(key))
                visit(name);
    }

private:
    struct Client {
        std::uint32_t user = 0;
        Hierarchy hierarchy = Hierarchy::separate;
        std::map<std::int64_t, std::uint64_t> requests;  // those that run, by key
    };

    std::map<std::string, Client, std::less<>> clients_;
};

}  // namespace vantor
