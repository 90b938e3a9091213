// A TCP connection to one peer. Only Wait blocks. Poll reports what has happened by the Event_ calls, on the
// caller's thread. Reads give raw bytes. The HTTP client, and so the program, does not use Disconnect,
// Flush, Eof, ReadError, WriteError and Event_SendComplete.
//
// Order of events: connected first; received bytes before the close that followed them; one Event_Error for a
// connection that failed, was reset or was closed by the peer.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

// LastErrorCode is the system's errno (111 for a refused connection), or one of these.
inline constexpr int kErrorPeerClosed = 10001;    // an orderly close by the peer
inline constexpr int kErrorNameNotFound = 10002;  // no such host, or no answer from the name service
inline constexpr int kErrorBadAddress = 10003;    // an invalid address or port

class SocketCore {
 public:
  SocketCore() = default;
  virtual ~SocketCore();
  SocketCore(const SocketCore&) = delete;
  SocketCore& operator=(const SocketCore&) = delete;

  std::string Address;    // host name or numeric address of the peer
  std::int64_t Port = 0;  // 0 until it is set

  // Ends the old connection, starts one and returns. Sets LastErrorCode to 0.
  void Connect();
  // Ends the connection without an event. Received bytes stay readable.
  void Close();
  // Discards the contents of the receive and the send buffer.
  void Purge();
  // Handles what has happened and raises the events.
  void Poll();
  // Waits cooperatively until Poll has something to handle, the host has delivered events, or `milliseconds`
  // have passed; without a connection too. Raises no event of the socket.
  void Wait(int milliseconds) const;

  bool IsConnected() const;
  // Bytes written that the kernel has not taken yet.
  std::size_t BytesToSend() const;
  int LastErrorCode() const { return lastError_; }

 protected:
  virtual void Event_Connected() {}
  virtual void Event_DataAvailable() {}
  virtual void Event_Error() {}
  // cancelled: the connection ended before everything was sent; Event_Error follows.
  virtual void Event_SendComplete(bool cancelled) { static_cast<void>(cancelled); }
  void SetLastErrorCode(int code) { lastError_ = code; }

  struct Connection;
  std::shared_ptr<Connection> connection_;
  std::string received_;
  std::size_t receivedFrom_ = 0;  // the bytes before it have been read

 private:
  int lastError_ = 0;
};

class TCPSocket : public SocketCore {
 public:
  // All bytes in the receive buffer, which stay there. Valid until the next call.
  std::string_view Lookahead() const;
  // Removes at most count bytes from the buffer; all of them for a count below 1.
  std::string Read(std::int64_t count);
  std::string ReadAll() { return Read(0); }
  // Queues bytes, also before the connection is made. Without a connection they are dropped.
  void Write(std::string_view bytes);

  // Sends as many queued bytes as the peer takes now.
  void Flush();
  void Disconnect() { Close(); }
  // No connection and nothing left to read.
  bool Eof() const { return !IsConnected() && Lookahead().empty(); }
  bool ReadError() const { return LastErrorCode() != 0 && LastErrorCode() != kErrorPeerClosed; }
  bool WriteError() const { return ReadError(); }
};
