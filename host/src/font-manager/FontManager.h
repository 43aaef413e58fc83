#pragma once

#include <filesystem>
#include <string_view>
#include <utility>

#include "SessionPart.h"

namespace host {

/// What a session says of the font manager, whose framework and process are stand-ins in a folder.
class FontManager final : public SessionPart {
 public:
  /// `folder` holds the frameworks and executables. Without one every word about the font manager
  /// is an error.
  explicit FontManager(std::filesystem::path folder) : mFolder(std::move(folder)) {}

  std::vector<std::string_view> keys() const override;
  std::vector<std::string_view> steps() const override;
  std::vector<std::string_view> expectations() const override;
  void readKeys(const YamlValue& root, Session& session) const override;
  Action readStep(const YamlValue& value) const override;
  Check readExpectation(const YamlValue& value) const override;
  std::vector<std::string> faultsOf(const CountedCall& call) const override;
  void addRandomRules(RandomRules& rules) const override;

 private:
  void needsFolder(const YamlValue& value) const;
  void readFramework(const YamlValue& root, FolderSetup& setup) const;
  void readProcess(const YamlValue& value, Session& session) const;

  std::filesystem::path mFolder;
};

}  // namespace host
