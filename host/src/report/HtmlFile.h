#pragma once

#include <string>
#include <string_view>

#include "JsonWriter.h"
#include "OutputFile.h"

namespace host {

/// Writes a page that shows the sessions and needs nothing else. It holds the JSON objects in one
/// array. Throws `std::runtime_error` if a write fails.
class HtmlFile final : public JsonWriter {
 public:
  HtmlFile(const std::string& path, const std::string& program);
  void finish() override;

 private:
  void write(const Json& object) override;

  OutputFile mFile;
  std::string_view mRest;  ///< of the page, behind the array
};

}  // namespace host
