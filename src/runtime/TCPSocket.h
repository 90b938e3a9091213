// A TCP connection to one peer. Nothing but Wait blocks: what happens is reported by the Event_ calls,
// all of them from inside Poll and on the caller's thread. Reads give raw bytes.
//
// Order of events: connected first; received bytes before the close that followed them; one
// Event_Error for a connection that could not be made, was reset, or was closed by the peer.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

// LastErrorCode is the system's errno (111 for a refused connection), or one of these.
inline constexpr int kErrorPeerClosed = 10001;    // the peer ended the connection in good order
inline constexpr int kErrorNameNotFound = 10002;  // no such host, or no answer from the name service
inline constexpr int kErrorBadAddress = 10003;    // an address or port that can't be one

class SocketCore {
 public:
  SocketCore();
  virtual ~SocketCore();
  SocketCore(const SocketCore&) = delete;
  SocketCore& operator=(const SocketCore&) = delete;

  std::string Address;    // host name or numeric address of the peer
  std::int64_t Port = 0;  // 0 until it is set

  // Starts a connection and returns; an old one is ended. LastErrorCode is 0 from here on.
  virtual void Connect();
  // Ends the connection without an event. Received bytes stay.
  virtual void Close();
  // Throws away what lies in the receive and the send buffer.
  virtual void Purge();
  // Handles what has happened and raises the events.
  virtual void Poll();
  // Waits cooperatively until Poll would find something, another event was delivered, or so many
  // milliseconds are over, without a connection too. Raises no event of the socket.
  void Wait(int milliseconds) const;

  bool IsConnected() const;
  // Bytes that were written and that the kernel has not taken yet.
  std::size_t BytesToSend() const;
  int LastErrorCode() const { return lastError_; }

 protected:
  virtual void Event_Connected() {}
  virtual void Event_DataAvailable() {}
  virtual void Event_Error() {}
  // cancelled says that the connection went before all was sent; Event_Error follows.
  virtual void Event_SendComplete(bool cancelled) { static_cast<void>(cancelled); }
  void SetLastErrorCode(int code) { lastError_ = code; }

  struct Connection;
  std::shared_ptr<Connection> connection_;
  std::string received_;
  std::size_t receivedFrom_ = 0;  // what stands before has been read

 private:
  int lastError_ = 0;
};

class TCPSocket : public SocketCore {
 public:
  // All bytes in the receive buffer, which stay there. The view holds until the next call.
  virtual std::string_view Lookahead() const;
  // At most count bytes, taken out of the buffer; a count below 1 gives all that is there.
  virtual std::string Read(std::int64_t count);
  virtual std::string ReadAll() { return Read(0); }
  // Queues bytes to be sent, before or after the connection stands. Bytes written to a connection
  // that has gone are dropped.
  virtual void Write(std::string_view bytes);

  // Sends what is queued as far as the peer takes it now.
  virtual void Flush();
  virtual void Disconnect() { Close(); }
  // No connection and nothing left to read.
  virtual bool Eof() const { return !IsConnected() && Lookahead().empty(); }
  virtual bool ReadError() const { return LastErrorCode() != 0 && LastErrorCode() != kErrorPeerClosed; }
  virtual bool WriteError() const { return ReadError(); }
};
