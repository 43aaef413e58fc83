#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "Faults.h"
#include "Host.h"
#include "Suites.h"
#include "Timeline.h"

// What every function of a suite has in common, so that each is no more than its body.

namespace host {

/// A text that can be a template's argument.
template <size_t size>
struct Name {
  consteval Name(const char (&name)[size]) { std::copy_n(name, size, text); }
  constexpr bool is(std::string_view other) const { return other == text; }
  /// Whether the argument of that name may be null.
  constexpr bool isOptional() const { return std::string_view(text).ends_with("?"); }
  char text[size];
};

/// A call of a host function by the plug-in, on the main thread, for as long as it lasts. Writes
/// the call into the flight record, and has the timeline ascribe entries to it.
class SuiteCall {
 public:
  template <typename... Arguments>
  explicit SuiteCall(std::string_view function, Arguments... arguments)
      : mRunning{function, {toValue(arguments)...}, sizeof...(arguments)} {
    begin();
  }
  ~SuiteCall();
  SuiteCall(const SuiteCall&) = delete;
  SuiteCall& operator=(const SuiteCall&) = delete;

  /// Notes what goes back to the plug-in.
  void answer(A_Err result) const;

 private:
  template <typename Argument>
  static RunningCall::Value toValue(Argument argument) {
    if constexpr (std::integral<Argument>) {
      return static_cast<int64_t>(argument);
    } else if constexpr (std::is_function_v<std::remove_pointer_t<Argument>>) {
      return reinterpret_cast<const void*>(argument);
    } else if constexpr (std::is_same_v<Argument, char*>) {
      // What a buffer for a text holds isn't the plug-in's yet.
      return static_cast<const void*>(argument);
    } else {
      return argument;
    }
  }

  void begin();
  void append(std::string_view text);

  RunningCall mRunning;
  const RunningCall* mOuter = nullptr;
  size_t mWritten = 0;
};

// Each check tells of a misuse. Returns the error of the call, or 0. The check of a handle stands
// in the source of the suite that gives it out.

A_Err CheckSuite(Host& host, const void* table);
A_Err CheckMenuItem(Host& host, AEGP_Command command);
A_Err CheckPointer(Host& host, AEGP_ProjectH project);
A_Err CheckPointer(Host& host, AEGP_MemHandle handle);
A_Err CheckPointer(Host& host, AEGP_PersistentBlobH preferences);
A_Err CheckPointer(Host& host, void* block);
/// Any other pointer only must not be null.
template <typename Target>
A_Err CheckPointer(Host& /*host*/, Target* /*pointer*/) {
  return A_Err_NONE;
}

/// Checks an argument by its type and its name: "aegp_plugin_id" and "menu_item" are numbers with a
/// meaning.
template <Name name, typename Argument>
A_Err CheckArgument(Host& host, Argument argument) {
  if constexpr (name.is("aegp_plugin_id")) {
    if (argument == kPluginId) return A_Err_NONE;
    return host.misused(Finding::wrongPluginId,
                        fmt::format("the plug-in's id is {}, not {}", kPluginId, argument));
  } else if constexpr (name.is("menu_item")) {
    return CheckMenuItem(host, argument);
  } else if constexpr (std::is_pointer_v<Argument> && !name.isOptional()) {
    if (argument) return CheckPointer(host, argument);
    return host.misused(Finding::nullArgument, fmt::format("{} is null", name.text), name.text);
  } else {
    return A_Err_NONE;
  }
}

template <typename Result, typename... Arguments>
using Pointer = Result (*)(Arguments...);

/// A member of a suite's table, with its arguments' names in their order: records the call, checks
/// the thread, the suite and the arguments, asks for a fault, and notes the error that goes back to
/// the plug-in. From another thread nothing of the host is touched. A name that ends with "?" is of
/// an argument that may be null.
///
/// `body` is the work of the function. It gets the host and the arguments, and returns nothing if
/// it can't fail. A call that is a misuse doesn't run it. A call that is to fail doesn't either,
/// unless the body takes the fault, an `A_Err`, before the arguments. One that gives something back
/// runs it all the same, so that what is left at the end is the plug-in's doing and not the
/// fault's.
template <auto* table, Name function, bool givesBack, auto body, Name... names>
class SuiteFunction {
 public:
  template <typename Result, typename... Arguments>
  operator Pointer<Result, Arguments...>() const {
    static_assert(sizeof...(Arguments) == sizeof...(names));
    // Its use makes it exist, so that the function is listed before `main` begins.
    (void)isKnown;
    return &call<Result, Arguments...>;
  }

 private:
  template <typename Result, typename... Arguments>
  static Result call(Arguments... arguments) {
    Host& host = TheHost();
    if (!host.isMainThread()) {
      return failed<Result>(host.reportFromOtherThread(table, function.text));
    }
    SuiteCall call(function.text, arguments...);
    A_Err misuse = CheckSuite(host, table);
    if (!givesBack && host.isIn(kStaticDestructor)) {
      host.misused(Finding::calledTooLate, "the host has shut down");
    }
    if (misuse == A_Err_NONE) ((misuse |= CheckArgument<names>(host, arguments)), ...);
    // Also counts a call that is wrong.
    const A_Err fault = host.takeFault(function.text);
    const Result result =
        misuse == A_Err_NONE ? run<Result>(host, fault, arguments...) : failed<Result>(misuse);
    call.answer(kCanFail<Result> ? static_cast<A_Err>(result) : A_Err{A_Err_NONE});
    return result;
  }

  template <typename Result, typename... Arguments>
  static Result run(Host& host, A_Err fault, Arguments... arguments) {
    if constexpr (std::is_invocable_v<decltype(body), Host&, A_Err, Arguments...>) {
      return body(host, fault, arguments...);
    } else {
      if (!givesBack && fault != A_Err_NONE) return failed<Result>(fault);
      if constexpr (std::is_void_v<decltype(body(host, arguments...))>) {
        body(host, arguments...);
        return failed<Result>(fault);
      } else {
        const Result result = body(host, arguments...);
        return result == Result{} ? failed<Result>(fault) : result;
      }
    }
  }

  // `IsEqual` answers a truth, and has no way to fail.
  template <typename Result>
  static constexpr bool kCanFail = std::is_same_v<Result, A_Err>;

  template <typename Result>
  static Result failed(A_Err error) {
    return static_cast<Result>(kCanFail<Result> ? error : 0);
  }

  static inline const bool isKnown = FunctionsThatCanFail().emplace(function.text).second;
};

/// Answers a call of a function that this host doesn't supply.
A_Err AnswerNotSupplied(const void* table, const char* function);

/// Such a function, for a table's member of any type. It ignores its arguments, which is safe: by
/// the platforms' calling conventions the caller removes them.
template <auto* table, Name function>
struct NotSupplied {
  template <typename Function>
  operator Function*() const {
    // Cast twice, because compilers take `void (*)()` for a function of any type.
    return reinterpret_cast<Function*>(reinterpret_cast<void (*)()>(&call));
  }

 private:
  static A_Err call() { return AnswerNotSupplied(table, function.text); }
};

/// Initializes the member `function` of the suite's table with its body, and names its arguments.
#define SUPPLIED(table, function, body, ...) \
  .function = SuiteFunction<&table, #function, false, body __VA_OPT__(, ) __VA_ARGS__>()
/// Does the same for a function that gives something back.
#define GIVES_BACK(table, function, body, ...) \
  .function = SuiteFunction<&table, #function, true, body __VA_OPT__(, ) __VA_ARGS__>()

/// Initializes the members that this host doesn't supply. A macro can't call itself, so each name
/// takes one more scan.
#define NOT_SUPPLIED(table, ...) SCAN_25(FIRST_NOT_SUPPLIED(table, __VA_ARGS__))
#define FIRST_NOT_SUPPLIED(table, function, ...) \
  .function = NotSupplied<&table, #function>()   \
      __VA_OPT__(, NEXT_NOT_SUPPLIED NO_ARGUMENTS(table, __VA_ARGS__))
#define NEXT_NOT_SUPPLIED() FIRST_NOT_SUPPLIED
#define NO_ARGUMENTS ()
#define SCAN_25(...) SCAN_5(SCAN_5(SCAN_5(SCAN_5(SCAN_5(__VA_ARGS__)))))
#define SCAN_5(...) SCAN(SCAN(SCAN(SCAN(SCAN(__VA_ARGS__)))))
#define SCAN(...) __VA_ARGS__

}  // namespace host
