#include "gateway/server/Connection.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>

namespace gateway {
namespace {

bool IsRetry(int error) { return error == EAGAIN || error == EWOULDBLOCK || error == EINTR; }

// Whether `head` contains the blank line. Only the last newBytes are new, so only they and the three bytes
// before them are searched.
bool HoldsBlankLine(const std::string& head, std::size_t newBytes) {
  const std::size_t from = head.size() - std::min(head.size(), newBytes + 3);
  return head.find("\n\r\n", from) != std::string::npos || head.find("\n\n", from) != std::string::npos;
}

bool IsControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte < 0x20 && c != '\r' && c != '\n' && c != '\t') || byte == 0x7f;
}

}  // namespace

bool Connection::WaitFor(short events, Clock::time_point deadline) const {
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (left <= 0) return false;
    pollfd waiting{socket_, events, 0};
    const int ready = ::poll(&waiting, 1, static_cast<int>(left));
    if (ready > 0) return true;
    if (ready < 0 && errno != EINTR) return false;
  }
}

ssize_t Connection::Receive(char* buffer, std::size_t capacity, Clock::time_point deadline) const {
  while (WaitFor(POLLIN, deadline)) {
    const ssize_t count = ::recv(socket_, buffer, capacity, 0);
    if (count >= 0 || !IsRetry(errno)) return count;
  }
  return -1;
}

Connection::Head Connection::ReadHead(RequestHead& head) {
  const auto deadline = Clock::now() + limits_.head;
  std::string received;
  std::array<char, 2048> bytes;
  for (std::size_t count = 0; !HoldsBlankLine(received, count);) {
    if (received.size() > limits_.headBytes) return Head::TooLarge;
    const ssize_t got = Receive(bytes.data(), bytes.size(), deadline);
    if (got <= 0) return Head::Gone;
    count = static_cast<std::size_t>(got);
    received.append(bytes.data(), count);
  }
  const std::size_t end = std::min(received.find("\n\r\n"), received.find("\n\n"));
  if (end > limits_.headBytes) return Head::TooLarge;
  if (std::any_of(received.begin(), received.begin() + static_cast<std::ptrdiff_t>(end), IsControl))
    return Head::Malformed;
  head = SplitHead(std::string_view(received).substr(0, end));
  return Head::Complete;
}

bool Connection::Send(std::string_view bytes) {
  if (answerDeadline_ == Clock::time_point{}) answerDeadline_ = Clock::now() + limits_.answer;
  while (!broken_ && !bytes.empty()) {
    broken_ = !WaitFor(POLLOUT, answerDeadline_);
    if (broken_) break;
    const ssize_t count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else {
      broken_ = !IsRetry(errno);
    }
  }
  return !broken_;
}

bool Connection::HasUnread() const {
  char next = 0;
  return ::recv(socket_, &next, 1, MSG_PEEK | MSG_DONTWAIT) > 0;
}

void Connection::Finish(bool expectMore) {
  if (broken_ || ::shutdown(socket_, SHUT_WR) != 0) return;
  if (!expectMore && !HasUnread()) return;
  const auto deadline = Clock::now() + limits_.linger;
  std::array<char, 4096> bytes;
  while (Receive(bytes.data(), bytes.size(), deadline) > 0) {
  }
}

}  // namespace gateway
