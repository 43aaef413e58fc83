#include "TemporaryWorkingDirectory.h"

#include <gtest/gtest.h>
#include <stdlib.h>

namespace fs = std::filesystem;

TemporaryWorkingDirectory::TemporaryWorkingDirectory() : mPrevious(fs::current_path()) {
  std::string name = testing::TempDir() + "typelark-XXXXXX";
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
  mPath = fs::canonical(name);
  fs::current_path(mPath);
}

TemporaryWorkingDirectory::~TemporaryWorkingDirectory() {
  fs::current_path(mPrevious);
  Remove();
}

void TemporaryWorkingDirectory::Remove() {
  fs::remove_all(mPath);
}
