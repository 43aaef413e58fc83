#include "Documents.h"

#include <algorithm>

namespace tamberlink {

std::string Documents::create() {
  mDocuments.push_back({"document-" + std::to_string(++mLastNumber), std::nullopt});
  return mDocuments.back().id;
}

void Documents::open(const std::string& path) {
  if (!find(path)) setPath(create(), path);
}

bool Documents::setPath(const std::string& id, const std::string& path) {
  const auto hasId = [&id](const Document& document) { return document.id == id; };
  if (std::none_of(mDocuments.begin(), mDocuments.end(), hasId)) return false;
  std::erase_if(mDocuments, [&](const Document& document) {
    return document.path == path && document.id != id;
  });
  std::find_if(mDocuments.begin(), mDocuments.end(), hasId)->path = path;
  return true;
}

bool Documents::close(const std::string& path) {
  return std::erase_if(mDocuments,
                       [&path](const Document& document) { return document.path == path; }) > 0;
}

std::optional<std::string> Documents::find(const std::string& path) const {
  for (const Document& document : mDocuments) {
    if (document.path == path) return document.id;
  }
  return std::nullopt;
}

}  // namespace tamberlink
