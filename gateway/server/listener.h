// The socket that clients connect to: our own, or one that the service manager opened before it started us.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "gateway/sources/Descriptor.h"

namespace gateway {

// A listening socket at 127.0.0.1; `port` 0 takes any free one. Throws std::system_error, whose what() names
// the address.
Descriptor ListenOnLoopback(std::uint16_t port);

// The socket handed over as descriptor 3, if LISTEN_PID names this process; nullopt if nothing was handed to
// it. Takes the variables out of the environment. Throws std::runtime_error if other than one listening
// stream socket was handed over.
std::optional<Descriptor> TakeHandedOver();

// "http://127.0.0.1:17733/"; for a socket of another kind, words that say so.
std::string AddressOf(const Descriptor& listener);

}  // namespace gateway
