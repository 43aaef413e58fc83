#include "GStringUtils.h"

#include <algorithm>

std::vector<std::string> GStringUtils::Split(const std::string& text,
                                             const std::string& delimiter) {
  if (text.empty() || delimiter.empty()) return {text};

  std::vector<std::string> pieces;
  size_t found = 0;
  for (size_t position = 0; position < text.size(); position = found + delimiter.size()) {
    found = std::min(text.find(delimiter, position), text.size());
    pieces.push_back(text.substr(position, found - position));
  }
  if (found + delimiter.size() == text.size()) pieces.emplace_back();
  return pieces;
}

std::string GStringUtils::StripPrecedingString(const std::string& text, const std::string& prefix) {
  std::string rest = text;
  if (prefix.empty()) return rest;
  while (BeginsWith(rest, prefix)) rest = std::string(rest.c_str() + prefix.size());
  return rest;
}

std::string GStringUtils::StripTrailingString(const std::string& text, const std::string& suffix) {
  std::string rest = text;
  if (suffix.empty()) return rest;
  while (EndsWith(rest, suffix)) rest.resize(rest.size() - suffix.size());
  return rest;
}

bool GStringUtils::BeginsWith(const std::string& text, const std::string& prefix) {
  return text.starts_with(prefix);
}

bool GStringUtils::EndsWith(const std::string& text, const std::string& suffix) {
  return text.ends_with(suffix);
}
