#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "GetPathToRunningProcess.h"
#include "Require.h"

// Input: the text of a launch-info file. The model splits the text instead of reading a stream.

namespace {

const std::string kKey = "oxbrim.path";

// The value ends at the line's first NUL. The key may follow the NUL.
bool ModelOfLine(const std::string& line, std::string& value) {
  if (line.find(kKey) == std::string::npos) return false;
  const std::string text = line.substr(0, line.find('\0'));
  const size_t equals = text.find('=');
  const size_t end = text.find('\r');
  if (equals == std::string::npos || (end != std::string::npos && end < equals)) return false;
  value = text.substr(equals + 1, end == std::string::npos ? end : end - equals - 1);
  return true;
}

bool Model(const std::string& file, std::string& value) {
  for (size_t start = 0; start <= file.size();) {
    size_t end = file.find('\n', start);
    if (end == std::string::npos) end = file.size();
    if (ModelOfLine(file.substr(start, end - start), value)) return true;
    start = end + 1;
  }
  return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string file(reinterpret_cast<const char*>(data), size);
  std::istringstream stream(file);
  std::string value = "untouched", expected = "untouched";
  const bool found = ReadConfiguredValue(stream, kKey, value);
  Require(found == Model(file, expected), "a value is found where the model finds one");
  Require(value == expected, "the value is the model's");
  return 0;
}
