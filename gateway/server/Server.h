// Accepts connections and gives each a thread of its own, up to a bound.
#pragma once

#include <list>

#include "gateway/server/Answers.h"
#include "gateway/server/Connection.h"
#include "gateway/sources/Descriptor.h"

namespace gateway {

class Server {
 public:
  // `source` must outlive the server.
  explicit Server(CaptionSource& source, const Limits& limits = {});
  ~Server();

  // Serves `listener`, a listening socket that doesn't block, until `stop` can be read (nothing is read from
  // it); clients that have not finished their request are then let go, answers under way get
  // Limits::farewell. Both descriptors stay the caller's. Throws std::system_error if the
  // system fails the listener; no connection is left open either way.
  void Serve(int listener, int stop);

 private:
  struct Client;

  void Accept(int listener);
  void Start(Descriptor socket);
  void Run(Client& client);
  void Reap();
  void ShutDown(int direction);
  void DismissAll();
  void AwaitAnEnd(int milliseconds);

  Answers answers_;
  Limits limits_;
  Descriptor ended_;  // an event counter: a client's thread is done
  std::list<Client> clients_;
};

}  // namespace gateway
