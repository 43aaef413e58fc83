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
/// format. What passes the identifier's threshold goes to every registered appender as one line:
/// `[UTC time in ISO 8601]`, tab, `[identifier]`, tab, `[level]`, tab, message, line feed.
///
/// Any thread may log; lines leave one at a time. What a thread logs while it is delivering a line
/// is dropped. No operation reports a failure or throws: a lock that fails ends it quietly.
class GLogger : private GNoncopyable {
 public:
  /// The level of an entry, or the threshold of an identifier: what is at most as high passes.
  /// `kLoggingLevelUnset` and `kLoggingLevelNone` let nothing pass and are never logged.
  enum LoggingLevel : int32_t {
    kLoggingLevelUnset = -1,
    kLoggingLevelNone = 0,
    kLoggingLevelError = 1,
    kLoggingLevelWarning = 2,
    kLoggingLevelInfo = 3,
    kLoggingLevelDebug = 4,
  };

  /// The one instance, made on first use and never destroyed.
  static GLogger* GetSharedInstance();

  /// A logger without appenders and with the one threshold that `ResetAllLoggingLevels` sets. All
  /// loggers share one message buffer: two of them may deliver lines on one thread only.
  GLogger();
  /// Deletes the appenders.
  virtual ~GLogger();

  /// Forgets all thresholds and sets that of "default" to `kLoggingLevelWarning`.
  void ResetAllLoggingLevels();

  /// Sets the threshold of an identifier, whatever its case.
  void SetLoggingLevelForIdentifier(const std::string& identifier, LoggingLevel level);

  /// Registers an appender, never null, and takes ownership. Lines go to the appenders in ascending
  /// order of their keys. An appender that has the key already is deleted; so is this one where the
  /// lock fails, which it does inside `Append`.
  void AddAppender(const std::string& key, std::unique_ptr<GLogAppender> appender);

  /// Deletes all appenders, in the order of their keys.
  void RemoveAllAppenders();

  /// "None", "Error", "Warning", "Info" or "Debug"; empty for any other value.
  static std::string LevelToString(LoggingLevel level);

  /// Logs one entry. `format` is a printf format for the arguments; `identifier` becomes part of
  /// it and must hold no `%`. Of text that the C library can't format only the time is left.
  void Log(const std::string& identifier, const LoggingLevel& level, const std::string& format,
           ...);
  /// `Log` at `kLoggingLevelError`.
  void LogError(const std::string& identifier, const std::string& format, ...);
  /// `Log` at `kLoggingLevelWarning`.
  void LogWarning(const std::string& identifier, const std::string& format, ...);
  /// `Log` with the arguments as a list, which is used up.
  void Logv(const std::string& identifier, const LoggingLevel& level, const std::string& format,
            va_list arguments);

  /// Whether an entry of this level passes the identifier's threshold.
  bool ShouldLog(const std::string& identifier, const LoggingLevel& level);

  /// Formats and delivers one line, without identifier, level or test of a threshold. Uses up
  /// `arguments`. Does nothing on a thread that is delivering a line.
  void LogvString(const std::string& format, va_list arguments);

  /// The identifier whose threshold holds for identifiers that have none.
  const std::string& GetDefaultLoggingIdentifier() const;

  /// The threshold of the identifier, whatever its case, or else that of "default".
  /// `kLoggingLevelUnset` where the lock fails.
  LoggingLevel GetLoggingLevelForIdentifier(const std::string& identifier);

 private:
  GMutex mAppendersLock;  // held while a line is formatted and delivered
  std::map<std::string, GLogAppender*> mAppenders;
  GMutex mLoggingLevelsLock;
  std::map<std::string, LoggingLevel> mLoggingLevels;  // by identifier in lower case
  std::string mDefaultLoggingIdentifier = "default";
};
