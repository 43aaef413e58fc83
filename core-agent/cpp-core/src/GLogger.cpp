#include "GLogger.h"

#include <utility>
#include <vector>

#include "GDateTime.h"
#include "GScopedLock.h"
#include "GSingleton.h"
#include "GStringUtils.h"
#include "GThread.h"

namespace {

// Returns whether the level is never logged, and passes nothing as a threshold.
bool IsSilent(GLogger::LoggingLevel level) {
  return level == GLogger::kLoggingLevelNone || level == GLogger::kLoggingLevelUnset;
}

// Formats zero-terminated text into the buffer, which grows if the text doesn't fit. The text is
// empty after a format error, which costs the message but not the line.
void FormatMessage(std::vector<char>& buffer, const std::string& format, va_list arguments) {
  constexpr size_t kStep = 256;
  va_list secondPass;
  va_copy(secondPass, arguments);
  int length = GStringUtils::OSvsnprintf(buffer.data(), buffer.size(), format.c_str(), arguments);
  if (length >= 0 && static_cast<size_t>(length) >= buffer.size()) {
    buffer.resize((static_cast<size_t>(length) + 1) / kStep * kStep + kStep);
    buffer[0] = '\0';
    length = GStringUtils::OSvsnprintf(buffer.data(), buffer.size(), format.c_str(), secondPass);
  }
  if (length < 0) buffer[0] = '\0';
  va_end(secondPass);
}

// Ends the delivery of a line, even if an appender throws: the thread may log again.
struct DeliveryEnd {
  GScopedLock& lock;
  void*& thread;
  ~DeliveryEnd() {
    if (lock.Lock()) thread = nullptr;
  }
};

}  // namespace

GLogger* GLogger::GetSharedInstance() {
  return GSingleton<GLogger>::GetSharedInstance();
}

GLogger::GLogger() {
  ResetAllLoggingLevels();
}

GLogger::~GLogger() {
  RemoveAllAppenders();
}

void GLogger::ResetAllLoggingLevels() {
  const GScopedLock lock(mLoggingLevelsLock);
  if (!lock.IsLocked()) return;
  mLoggingLevels.clear();
  mLoggingLevels[mDefaultLoggingIdentifier] = kLoggingLevelWarning;
}

void GLogger::SetLoggingLevelForIdentifier(const std::string& identifier, LoggingLevel level) {
  const GScopedLock lock(mLoggingLevelsLock);
  if (lock.IsLocked()) mLoggingLevels[GStringUtils::OSToLowerCase(identifier)] = level;
}

void GLogger::AddAppender(const std::string& key, std::unique_ptr<GLogAppender> appender) {
  // Deleted after the lock is released, because its destructor may log.
  std::unique_ptr<GLogAppender> replaced;
  const GScopedLock lock(mAppendersLock);
  if (!lock.IsLocked()) return;
  GLogAppender*& registered = mAppenders[key];
  replaced.reset(std::exchange(registered, appender.release()));
}

void GLogger::RemoveAllAppenders() {
  const GScopedLock lock(mAppendersLock);
  if (!lock.IsLocked()) return;
  for (const auto& [key, appender] : mAppenders) delete appender;
  mAppenders.clear();
}

std::string GLogger::LevelToString(LoggingLevel level) {
  switch (level) {
    case kLoggingLevelNone:
      return "None";
    case kLoggingLevelError:
      return "Error";
    case kLoggingLevelWarning:
      return "Warning";
    case kLoggingLevelInfo:
      return "Info";
    case kLoggingLevelDebug:
      return "Debug";
    default:
      return "";
  }
}

void GLogger::Log(const std::string& identifier, const LoggingLevel& level,
                  const std::string& format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Logv(identifier, level, format, arguments);
  va_end(arguments);
}

void GLogger::LogError(const std::string& identifier, const std::string& format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Logv(identifier, kLoggingLevelError, format, arguments);
  va_end(arguments);
}

void GLogger::LogWarning(const std::string& identifier, const std::string& format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Logv(identifier, kLoggingLevelWarning, format, arguments);
  va_end(arguments);
}

void GLogger::Logv(const std::string& identifier, const LoggingLevel& level,
                   const std::string& format, va_list arguments) {
  if (!ShouldLog(identifier, level)) return;
  constexpr size_t kRoomForLevel = 16;  // with the brackets and tabs
  std::string prefixed;
  prefixed.reserve(identifier.size() + kRoomForLevel + format.size());
  prefixed.append("[").append(identifier).append("]\t[").append(LevelToString(level));
  LogvString(prefixed.append("]\t").append(format), arguments);
}

bool GLogger::ShouldLog(const std::string& identifier, const LoggingLevel& level) {
  if (IsSilent(level)) return false;
  const LoggingLevel threshold = GetLoggingLevelForIdentifier(identifier);
  return !IsSilent(threshold) && threshold >= level;
}

void GLogger::LogvString(const std::string& format, va_list arguments) {
  static GMutex sCurrentLogThreadMutex;
  static void* sCurrentLogThread = nullptr;  // the thread that is delivering a line

  // An appender may log, and so may the clock. Their entries end here, before they ask for a lock
  // that this thread holds already.
  bool mayGoOn = false;
  {
    const GScopedLock lock(sCurrentLogThreadMutex);
    mayGoOn = lock.IsLocked() &&
              !GThread::AreThreadsEqual(sCurrentLogThread, GThread::GetCurrentThread());
  }
  if (!mayGoOn) return;

  const GScopedLock appendersLock(mAppendersLock);
  if (!appendersLock.IsLocked()) return;
  GScopedLock threadLock(sCurrentLogThreadMutex);
  if (threadLock.IsLocked()) {
    sCurrentLogThread = GThread::GetCurrentThread();
    threadLock.Unlock();
  }

  const DeliveryEnd end{threadLock, sCurrentLogThread};
  if (!mAppenders.empty()) {
    static std::vector<char> sStringBuffer(256);  // guarded by mAppendersLock, never shrinks
    FormatMessage(sStringBuffer, format, arguments);
    std::string line = "[";
    line.append(GDateTime().GetAsISO8601String(true)).append("]\t");
    line.append(sStringBuffer.data()).append("\n");
    for (const auto& [key, appender] : mAppenders) appender->Append(line);
  }
}

const std::string& GLogger::GetDefaultLoggingIdentifier() const {
  return mDefaultLoggingIdentifier;
}

GLogger::LoggingLevel GLogger::GetLoggingLevelForIdentifier(const std::string& identifier) {
  const GScopedLock lock(mLoggingLevelsLock);
  if (!lock.IsLocked()) return kLoggingLevelUnset;
  auto found = mLoggingLevels.find(GStringUtils::OSToLowerCase(identifier));
  if (found == mLoggingLevels.end() && identifier != mDefaultLoggingIdentifier) {
    found = mLoggingLevels.find(mDefaultLoggingIdentifier);
  }
  return found != mLoggingLevels.end() ? found->second : kLoggingLevelUnset;
}
