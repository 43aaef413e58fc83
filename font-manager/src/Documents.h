#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tamberlink {

/// The documents that the framework was told of, each with an identifier that is never given again.
class Documents {
 public:
  /// Adds a document that has no path yet, and returns its identifier.
  std::string create();

  /// The document at the path is open from now on, under the identifier that it has if it was open
  /// already.
  void open(const std::string& path);

  /// Gives the document the path, which any other document that had it loses. False if there is no
  /// such document.
  bool setPath(const std::string& id, const std::string& path);

  /// Forgets the document at the path. False if there is none.
  bool close(const std::string& path);

  /// The identifier of the document at the path, or null if there is none.
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
