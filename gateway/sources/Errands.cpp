#include "gateway/sources/Errands.h"

#include <exception>
#include <thread>

#include "gateway/sources/log.h"

namespace gateway {

constexpr char kTooLate[] = "The site took too long.";
// For clients that still read: the gateway is ending, or they have closed only their half of the connection.
constexpr char kGivenUp[] = "The gateway gave up before the site had answered.";

struct Errands::Errand {
  Event stop;
  Event done;
  SiteAnswer answer;  // valid once done
  std::size_t waiting = 0;
  std::thread thread;
};

Errands::~Errands() {
  std::unique_lock lock(mutex_);
  ended_ = true;
  for (const auto& [key, errand] : running_) errand->stop.Set();
  allLeft_.wait(lock, [this] { return asking_ == 0; });
}

SiteAnswer Errands::Ask(const std::string& key, const Patience& patience, const Work& work) {
  const std::shared_ptr<Errand> errand = Join(key, work);
  if (!errand) return {nullptr, "", {"The gateway can't fetch anything now."}};
  return Leave(key, errand, WaitFor(errand->done.Number(), patience));
}

std::shared_ptr<Errands::Errand> Errands::Join(const std::string& key, const Work& work) {
  const std::lock_guard lock(mutex_);
  if (ended_) return nullptr;
  std::shared_ptr<Errand> errand = running_[key];
  try {
    if (!errand) {
      errand = std::make_shared<Errand>();
      errand->thread = std::thread([this, key, work, raw = errand.get()] { Run(key, *raw, work); });
      running_[key] = errand;
    }
  } catch (const std::exception& error) {  // no thread or descriptor left
    Log(error.what());
    running_.erase(key);
    return nullptr;
  }
  ++errand->waiting;
  ++asking_;
  return errand;
}

// The last one to leave stops the errand, if it is not done, and joins its thread.
SiteAnswer Errands::Leave(const std::string& key, const std::shared_ptr<Errand>& errand, Waited waited) {
  bool isLast = false;
  {
    const std::lock_guard lock(mutex_);
    isLast = --errand->waiting == 0;
    if (isLast) Forget(key, *errand);
  }
  if (isLast) {
    errand->stop.Set();
    errand->thread.join();
  }
  SiteAnswer answer = waited == Waited::Ready
                          ? errand->answer
                          : SiteAnswer{nullptr, "", {waited == Waited::TooLate ? kTooLate : kGivenUp}};
  const std::lock_guard lock(mutex_);
  if (--asking_ == 0) allLeft_.notify_all();
  return answer;
}

void Errands::Run(const std::string& key, Errand& errand, const Work& work) {
  try {
    errand.answer = work(errand.stop.Number());
  } catch (const std::exception& error) {  // out of memory or descriptors
    Log(error.what());
    errand.answer = {nullptr, "", {"The gateway ran out of memory."}};
  }
  {
    const std::lock_guard lock(mutex_);
    Forget(key, errand);
  }
  errand.done.Set();
}

// The next Ask for this key starts a new errand. Requires: mutex_ is held.
void Errands::Forget(const std::string& key, const Errand& errand) {
  const auto found = running_.find(key);
  if (found != running_.end() && found->second.get() == &errand) running_.erase(found);
}

}  // namespace gateway
