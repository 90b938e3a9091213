// Work that several ask for at the same time is done once, and all get its answer.
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

// What the site gave. A cause where something is missing.
struct SiteAnswer {
  std::shared_ptr<const SiteList> list;  // of a video; nullptr if it could not be read
  std::string document;                  // of a track; "" if there is none
  Cause cause;
};

// Each errand has a thread while it lasts, and none is left when those who asked have their answer.
class Errands {
 public:
  // Gives up soon once the descriptor can be read.
  using Work = std::function<SiteAnswer(int stop)>;

  Errands() = default;
  // Ends all errands; returns once nobody waits in Ask.
  ~Errands();

  // The answer of the errand with this key, which is begun with work if there is none. Once all who wait for
  // it have lost their patience, it is stopped.
  SiteAnswer Ask(const std::string& key, const Patience& patience, const Work& work);

 private:
  struct Errand;

  std::shared_ptr<Errand> Join(const std::string& key, const Work& work);
  SiteAnswer Leave(const std::string& key, const std::shared_ptr<Errand>& errand, Waited waited);
  void Run(const std::string& key, Errand& errand, const Work& work);
  void Forget(const std::string& key, const Errand& errand);

  std::mutex mutex_;
  std::condition_variable allLeft_;
  std::map<std::string, std::shared_ptr<Errand>> running_;
  std::size_t asking_ = 0;
  bool ended_ = false;
};

}  // namespace gateway
