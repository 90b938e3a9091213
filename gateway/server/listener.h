// The socket that clients connect to: opened here, or by the service manager that started the gateway.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "gateway/sources/Descriptor.h"

namespace gateway {

// A listening socket at 127.0.0.1; `port` 0 takes any free one. Throws std::system_error, whose what() gives
// the address.
Descriptor ListenOnLoopback(std::uint16_t port);

// The socket passed as descriptor 3, if LISTEN_PID is this process; nullopt if there is none. Removes the
// variables from the environment. Throws std::runtime_error if anything but one listening stream socket was
// passed.
std::optional<Descriptor> TakeHandedOver();

// "http://127.0.0.1:17733/"; for a socket that is not IPv4, a phrase that says so.
std::string AddressOf(const Descriptor& listener);

}  // namespace gateway
