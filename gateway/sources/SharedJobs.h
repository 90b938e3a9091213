// Runs work that several threads request at the same time only once, and gives all of them its answer.
#pragma once

#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "gateway/sources/Patience.h"
#include "gateway/sources/causes.h"
#include "gateway/sources/site_list.h"

namespace gateway {

// The site's answer. The cause says why something is missing.
struct SiteAnswer {
  std::shared_ptr<const SiteList> list;  // of a video; nullptr if it could not be read
  std::string document;                  // of a track; "" if there is none
  Cause cause;
};

// Each job runs in a thread of its own. After the last Ask for it has returned, the thread has ended.
class SharedJobs {
 public:
  // Must return soon after the descriptor `stop` becomes readable.
  using Work = std::function<SiteAnswer(int stop)>;

  SharedJobs() = default;
  // Stops all jobs, and returns once no thread is in Ask.
  ~SharedJobs();

  // The answer of the running job with this key; if there is none, one is started with work. It is stopped
  // once all who wait for it have run out of patience.
  SiteAnswer Ask(const std::string& key, const Patience& patience, const Work& work);

 private:
  struct Job;

  std::shared_ptr<Job> Join(const std::string& key, const Work& work);
  SiteAnswer Leave(const std::string& key, const std::shared_ptr<Job>& job, Waited waited);
  void Run(const std::string& key, Job& job, const Work& work);
  void Forget(const std::string& key, const Job& job);

  std::mutex mutex_;
  std::condition_variable allLeft_;
  std::map<std::string, std::shared_ptr<Job>> running_;
  std::size_t asking_ = 0;
  bool ended_ = false;
};

}  // namespace gateway
