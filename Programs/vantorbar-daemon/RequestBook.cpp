#include "Programs/vantorbar-daemon/RequestBook.h"

#include <algorithm>

namespace vantor {

bool RequestBook::add(const std::string& client, std::uint32_t user) {
    if (has(client))
        return true;
    const auto isOfUser = [user](const auto& entry) { return entry.second.user == user; };
    if (std::ranges::count_if(clients_, isOfUser) >= static_cast<std::ptrdiff_t>(kClientsOfUser))
        return false;
    clients_.try_emplace(client).first->second.user = user;
    return true;
}

void RequestBook::remove(std::string_view client) {
    if (const auto found = clients_.find(client); found != clients_.end())
        clients_.erase(found);
}

void RequestBook::setHierarchy(std::string_view client, Hierarchy hierarchy) {
    if (const auto found = clients_.find(client); found != clients_.end())
        found->second.hierarchy = hierarchy;
}

bool RequestBook::start(std::string_view client, std::int64_t key) {
    const auto found = clients_.find(client);
    return found != clients_.end() && ++found->second.requests[key] == 1;
}

void RequestBook::stop(std::string_view client, std::int64_t key) {
    const auto found = clients_.find(client);
    if (found == clients_.end())
        return;
    auto& requests = found->second.requests;
    const auto request = requests.find(key);
    if (request != requests.end() && --request->second == 0)
        requests.erase(request);
}

bool RequestBook::isAsked(std::int64_t key) const noexcept {
    return std::ranges::any_of(
        clients_, [key](const auto& entry) { return entry.second.requests.contains(key); });
}

bool RequestBook::asks(std::string_view client, std::int64_t key) const noexcept {
    const auto found = clients_.find(client);
    return found != clients_.end() && found->second.requests.contains(key);
}

Hierarchy RequestBook::hierarchy(std::string_view client) const noexcept {
    const auto found = clients_.find(client);
    return found == clients_.end() ? Hierarchy::separate : found->second.hierarchy;
}

}  // namespace vantor
