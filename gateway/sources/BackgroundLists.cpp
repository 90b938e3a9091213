#include "gateway/sources/BackgroundLists.h"

#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <system_error>
#include <thread>

#include "gateway/sources/Descriptor.h"
#include "gateway/sources/Patience.h"
#include "gateway/sources/log.h"

namespace gateway {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kMostQuestions = 16;

}  // namespace

// Its thread sees one end of a pair of sockets as its client's connection; closing the other ends it.
struct BackgroundLists::Question {
  explicit Question(std::string_view video) : code(video) {
    std::array<int, 2> ends{-1, -1};
    const int failed = ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data());
    seen = Descriptor(ends[0]);
    held = Descriptor(ends[1]);
    if (failed != 0) throw std::system_error(errno, std::system_category(), "no descriptor left");
  }
  ~Question() {
    if (thread.joinable()) thread.join();
  }

  void End() {
    isEnded = true;
    ::shutdown(held.Number(), SHUT_RDWR);
  }

  const std::string code;
  Event done;  // the list is there
  Descriptor seen, held;
  TrackList list;
  std::atomic<bool> isDone = false;
  int askers = 0;
  bool outlives = false;  // somebody has left for want of patience: it goes on without askers
  bool isEnded = false;   // all askers have gone: nobody may join it any more
  std::thread thread;
};

BackgroundLists::~BackgroundLists() {
  for (const auto& question : questions_) question->End();
  questions_.clear();
}

std::optional<TrackList> BackgroundLists::Ask(std::string_view code, const Asker& asker,
                                              std::chrono::milliseconds patience) {
  const auto deadline = Clock::now() + patience;
  const auto question = Join(code);
  if (!question) return std::nullopt;
  const Waited waited = WaitFor(question->done.Number(), Patience::Of(asker, deadline));
  std::optional<TrackList> list;
  if (waited == Waited::Ready) list = question->list;
  const std::lock_guard lock(mutex_);
  question->outlives |= waited == Waited::TooLate;
  if (--question->askers == 0 && !question->outlives) question->End();
  return list;
}

TrackList BackgroundLists::ListOf(const Question& question) try {
  return source_.Tracks(question.code, {Clock::now(), question.seen.Number()});
} catch (const std::exception& error) {  // out of memory
  Log(error.what());
  return {{}, "The gateway ran out of memory."};
}

std::shared_ptr<BackgroundLists::Question> BackgroundLists::Join(std::string_view code) try {
  const std::lock_guard lock(mutex_);
  questions_.remove_if([](const auto& question) { return question->isDone.load(); });
  auto found = std::find_if(questions_.begin(), questions_.end(), [&](const auto& question) {
    return question->code == code && !question->isEnded;
  });
  if (found == questions_.end()) {
    if (questions_.size() >= kMostQuestions) return nullptr;
    auto question = std::make_shared<Question>(code);
    question->thread = std::thread([this, &question = *question] {
      question.list = ListOf(question);
      question.isDone = true;
      question.done.Set();
    });
    found = questions_.insert(questions_.end(), std::move(question));
  }
  ++(*found)->askers;
  return *found;
} catch (const std::system_error& error) {
  Log(std::string("a list is not asked for: ") + error.what());
  return nullptr;
}

}  // namespace gateway
