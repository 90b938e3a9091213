// Lists that are asked for beside the client's request, so that it need not wait for them to the end.
#pragma once

#include <chrono>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "gateway/sources/CaptionSource.h"

namespace gateway {

// One question for each video at a time; who asks for the same meanwhile waits for the same answer.
class BackgroundLists {
 public:
  // `source` must outlive this.
  explicit BackgroundLists(CaptionSource& source) : source_(source) {}
  // Ends all questions, as if their clients had gone.
  // Requires: nobody waits in Ask.
  ~BackgroundLists();

  // The source's list, or nullopt once the patience is over or the asker's client has gone. After the
  // first the question goes on, for the sake of the next asker; once all its clients have gone it is ended.
  // nullopt at once where too many questions stand already.
  std::optional<TrackList> Ask(std::string_view code, const Asker& asker, std::chrono::milliseconds patience);

 private:
  struct Question;

  TrackList ListOf(const Question& question);
  std::shared_ptr<Question> Join(std::string_view code);

  CaptionSource& source_;
  std::mutex mutex_;
  std::list<std::shared_ptr<Question>> questions_;
};

}  // namespace gateway
