#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tamberlink {

/// The documents that the framework knows, each with an identifier that is never used again.
class Documents {
 public:
  /// Adds a document without a path and returns its identifier.
  std::string create();

  /// Adds a document at the path, unless there is one.
  void open(const std::string& path);

  /// Sets the document's path and removes any other document of that path. Returns false if there
  /// is no such document.
  bool setPath(const std::string& id, const std::string& path);

  /// Removes the document at the path. Returns false if there is none.
  bool close(const std::string& path);

  /// Returns the identifier of the document at the path, or null if there is none.
  [[nodiscard]] std::optional<std::string> find(const std::string& path) const;

 private:
  struct Document {
    std::string id;
    std::optional<std::string> path;
  };

  std::vector<Document> mDocuments;
  unsigned int mLastNumber = 0;
};

}  // namespace tamberlink
