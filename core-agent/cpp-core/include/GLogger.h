#pragma once

#include <cstdarg>
#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "GLogAppender.h"
#include "GMutex.h"
#include "GNoncopyable.h"

/// The process-wide logging service.
///
/// A caller names an identifier (a category such as "FileSystem"), a level and a printf-style
/// format. Every appender gets an entry that passes the identifier's threshold, as one line:
/// `[UTC time in ISO 8601]`, tab, `[identifier]`, tab, `[level]`, tab, message, line feed.
///
/// Any thread may log, and one line is delivered at a time. An entry that a thread logs while it
/// delivers a line is dropped. No operation throws or reports a failure, not even a failed lock.
class GLogger : private GNoncopyable {
 public:
  /// The level of an entry, or the threshold of an identifier, which passes entries up to its own
  /// level. `kLoggingLevelUnset` and `kLoggingLevelNone` pass nothing and are never logged.
  enum LoggingLevel : int32_t {
    kLoggingLevelUnset = -1,
    kLoggingLevelNone = 0,
    kLoggingLevelError = 1,
    kLoggingLevelWarning = 2,
    kLoggingLevelInfo = 3,
    kLoggingLevelDebug = 4,
  };

  /// Returns the one instance, which is made on first use and never destroyed.
  static GLogger* GetSharedInstance();

  /// Makes a logger without appenders, with the threshold that `ResetAllLoggingLevels` sets. The
  /// message buffer is shared, but each logger has its own lock: use all loggers from one thread.
  GLogger();
  /// Deletes the appenders.
  virtual ~GLogger();

  /// Removes all thresholds, and sets that of "default" to `kLoggingLevelWarning`.
  void ResetAllLoggingLevels();

  /// Sets the threshold of an identifier, regardless of its case.
  void SetLoggingLevelForIdentifier(const std::string& identifier, LoggingLevel level);

  /// Registers an appender, which must not be null, and takes ownership. Appenders get a line in
  /// ascending order of their keys. Deletes the appender that had the key before. If the lock
  /// fails, as it does inside `Append`, deletes the new one instead.
  void AddAppender(const std::string& key, std::unique_ptr<GLogAppender> appender);

  /// Deletes all appenders, in the order of their keys.
  void RemoveAllAppenders();

  /// Returns "None", "Error", "Warning", "Info" or "Debug", or "" for any other value.
  static std::string LevelToString(LoggingLevel level);

  /// Logs one entry. `format` is a printf format for the arguments. `identifier` becomes part of
  /// it, so it must not contain `%`. If the C library can't format the text, the line has only the
  /// time.
  void Log(const std::string& identifier, const LoggingLevel& level, const std::string& format,
           ...);
  /// `Log` at `kLoggingLevelError`.
  void LogError(const std::string& identifier, const std::string& format, ...);
  /// `Log` at `kLoggingLevelWarning`.
  void LogWarning(const std::string& identifier, const std::string& format, ...);
  /// `Log` with a list of arguments. Uses up the list.
  void Logv(const std::string& identifier, const LoggingLevel& level, const std::string& format,
            va_list arguments);

  /// Returns whether an entry of this level passes the identifier's threshold.
  bool ShouldLog(const std::string& identifier, const LoggingLevel& level);

  /// Formats and delivers one line, without an identifier or a level, whatever the thresholds. Uses
  /// up `arguments`. Does nothing on a thread that is delivering a line.
  void LogvString(const std::string& format, va_list arguments);

  /// Returns the identifier whose threshold applies to identifiers that have none.
  const std::string& GetDefaultLoggingIdentifier() const;

  /// Returns the threshold of the identifier, regardless of its case, or else that of "default".
  /// Returns `kLoggingLevelUnset` if the lock fails.
  LoggingLevel GetLoggingLevelForIdentifier(const std::string& identifier);

 private:
  GMutex mAppendersLock;  // held while a line is formatted and delivered
  std::map<std::string, GLogAppender*> mAppenders;
  GMutex mLoggingLevelsLock;
  std::map<std::string, LoggingLevel> mLoggingLevels;  // by identifier in lower case
  std::string mDefaultLoggingIdentifier = "default";
};
