#include "Shrinker.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <string>
#include <vector>

namespace host {
namespace {

// Tries smaller sessions, and keeps each one that still fails.
class Shrinker {
 public:
  Shrinker(const YAML::Node& session, const StillFails& stillFails, int maxTrials)
      : mSession(YAML::Clone(session)), mStillFails(stillFails), mTrialsLeft(maxTrials) {}

  YAML::Node shrink() {
    bool isSmaller = true;
    while (isSmaller && mTrialsLeft > 0) {
      isSmaller = false;
      while (shortenList({"steps"})) isSmaller = true;
      isSmaller = dropKeys({}) || isSmaller;
      isSmaller = dropPairsOfKeys() || isSmaller;
      for (const char* key : {"host", "projects", "vault", "files", "framework"}) {
        if (mSession[key] && mSession[key].IsMap()) isSmaller = dropKeys({key}) || isSmaller;
      }
      for (const std::string& project : keysOf({"projects"})) {
        while (shortenList({"projects", project})) isSmaller = true;
      }
      isSmaller = shortenNumbers() || isSmaller;
    }
    return mSession;
  }

 private:
  using Path = std::vector<std::string>;

  static YAML::Node at(const YAML::Node& root, const Path& path) {
    YAML::Node node = root;
    for (const std::string& key : path) node.reset(node[key]);
    return node;
  }

  bool keepIfFailing(const YAML::Node& candidate) {
    if (--mTrialsLeft < 0 || !mStillFails(candidate)) return false;
    mSession = candidate;
    return true;
  }

  // Leaves out as many elements at once as it can: half of them, then a quarter, down to one.
  bool shortenList(const Path& path) {
    const size_t count = at(mSession, path).size();
    for (size_t chunk = (count + 1) / 2; chunk > 0; chunk /= 2) {
      for (size_t begin = 0; begin < count; begin += chunk) {
        YAML::Node candidate = YAML::Clone(mSession);
        YAML::Node list = at(candidate, path);
        YAML::Node rest(YAML::NodeType::Sequence);
        rest.SetStyle(list.Style());
        for (size_t i = 0; i < count; ++i) {
          if (i < begin || i >= begin + chunk) rest.push_back(list[i]);
        }
        list = rest;
        if (keepIfFailing(candidate)) return true;
      }
    }
    return false;
  }

  std::vector<std::string> keysOf(const Path& path) const {
    std::vector<std::string> keys;
    for (const auto& entry : at(mSession, path)) {
      const std::string key = entry.first.Scalar();
      // Without them other rules hold.
      if (key != "tolerant" && key != "known issues") keys.push_back(key);
    }
    return keys;
  }

  bool drop(const Path& path, const std::vector<std::string>& keys) {
    YAML::Node candidate = YAML::Clone(mSession);
    for (const std::string& key : keys) at(candidate, path).remove(key);
    return keepIfFailing(candidate);
  }

  bool dropKeys(const Path& path) {
    bool isSmaller = false;
    for (const std::string& key : keysOf(path)) isSmaller = drop(path, {key}) || isSmaller;
    return isSmaller;
  }

  // One may need the other, as the framework's folder the file that names it.
  bool dropPairsOfKeys() {
    const std::vector<std::string> keys = keysOf({});
    for (size_t i = 0; i < keys.size(); ++i) {
      for (size_t k = i + 1; k < keys.size(); ++k) {
        if (keys[i] != "steps" && keys[k] != "steps" && drop({}, {keys[i], keys[k]})) return true;
      }
    }
    return false;
  }

  // Makes the numbers of steps such as `tick: 30` smaller, and `tick: {count: 3, ...}` a number.
  bool shortenNumbers() {
    bool isSmaller = false;
    for (size_t i = 0; i < mSession["steps"].size(); ++i) {
      if (dropPace(i)) isSmaller = true;
      while (shortenNumber(i)) isSmaller = true;
    }
    return isSmaller;
  }

  bool dropPace(size_t step) {
    const YAML::Node tick = mSession["steps"][step];
    if (!tick.IsMap() || !tick["tick"] || !tick["tick"].IsMap()) return false;
    YAML::Node candidate = YAML::Clone(mSession);
    candidate["steps"][step]["tick"] = tick["tick"]["count"].Scalar();
    return keepIfFailing(candidate);
  }

  bool shortenNumber(size_t step) {
    const YAML::Node node = mSession["steps"][step];
    if (!node.IsMap() || !node.begin()->second.IsScalar()) return false;
    const std::string key = node.begin()->first.Scalar();
    const std::string text = node.begin()->second.Scalar();
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return false;
    for (const int smaller : {1, number / 2, number - 1}) {
      if (smaller < 1 || smaller >= number) continue;
      YAML::Node candidate = YAML::Clone(mSession);
      candidate["steps"][step][key] = smaller;
      if (keepIfFailing(candidate)) return true;
    }
    return false;
  }

  YAML::Node mSession;
  const StillFails& mStillFails;
  int mTrialsLeft;
};

}  // namespace

YAML::Node Shrink(const YAML::Node& session, const StillFails& stillFails, int maxTrials) {
  return Shrinker(session, stillFails, maxTrials).shrink();
}

}  // namespace host
