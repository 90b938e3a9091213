#include "gateway/sources/SharedJobs.h"

#include <exception>
#include <thread>

#include "gateway/sources/log.h"

namespace gateway {

constexpr char kTooLate[] = "The site took too long.";
// For clients that still read: the gateway is ending, or they have closed only their half of the connection.
constexpr char kGivenUp[] = "The gateway gave up before the site had answered.";

struct SharedJobs::Job {
  Event stop;
  Event done;
  SiteAnswer answer;  // valid once done
  std::size_t waiting = 0;
  std::thread thread;
};

SharedJobs::~SharedJobs() {
  std::unique_lock lock(mutex_);
  ended_ = true;
  for (const auto& [key, job] : running_) job->stop.Set();
  allLeft_.wait(lock, [this] { return asking_ == 0; });
}

SiteAnswer SharedJobs::Ask(const std::string& key, const Patience& patience, const Work& work) {
  const std::shared_ptr<Job> job = Join(key, work);
  if (!job) return {nullptr, "", {"The gateway can't fetch anything now."}};
  return Leave(key, job, WaitFor(job->done.Number(), patience));
}

std::shared_ptr<SharedJobs::Job> SharedJobs::Join(const std::string& key, const Work& work) {
  const std::lock_guard lock(mutex_);
  if (ended_) return nullptr;
  std::shared_ptr<Job> job = running_[key];
  try {
    if (!job) {
      job = std::make_shared<Job>();
      job->thread = std::thread([this, key, work, raw = job.get()] { Run(key, *raw, work); });
      running_[key] = job;
    }
  } catch (const std::exception& error) {  // no thread or descriptor left
    Log(error.what());
    running_.erase(key);
    return nullptr;
  }
  ++job->waiting;
  ++asking_;
  return job;
}

// The last one to leave stops the job, if it is not done, and joins its thread.
SiteAnswer SharedJobs::Leave(const std::string& key, const std::shared_ptr<Job>& job, Waited waited) {
  bool isLast = false;
  {
    const std::lock_guard lock(mutex_);
    isLast = --job->waiting == 0;
    if (isLast) Forget(key, *job);
  }
  if (isLast) {
    job->stop.Set();
    job->thread.join();
  }
  SiteAnswer answer = waited == Waited::Ready
                          ? job->answer
                          : SiteAnswer{nullptr, "", {waited == Waited::TooLate ? kTooLate : kGivenUp}};
  const std::lock_guard lock(mutex_);
  if (--asking_ == 0) allLeft_.notify_all();
  return answer;
}

void SharedJobs::Run(const std::string& key, Job& job, const Work& work) {
  try {
    job.answer = work(job.stop.Number());
  } catch (const std::exception& error) {  // out of memory or descriptors
    Log(error.what());
    job.answer = {nullptr, "", {"The gateway ran out of memory."}};
  }
  {
    const std::lock_guard lock(mutex_);
    Forget(key, job);
  }
  job.done.Set();
}

// The next Ask for this key starts a new job. Requires: mutex_ is held.
void SharedJobs::Forget(const std::string& key, const Job& job) {
  const auto found = running_.find(key);
  if (found != running_.end() && found->second.get() == &job) running_.erase(found);
}

}  // namespace gateway
