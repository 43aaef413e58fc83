#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <type_traits>

#include "Faults.h"
#include "Host.h"
#include "SuiteCall.h"
#include "SuiteTables.h"

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

enum class Order {
  faultFirst,
  /// For a function that gives something back, so that what is left at the end is the plug-in's
  /// doing and not the fault's.
  workFirst,
};

/// The work of a function. It may report further misuses with `SuiteCall::current`. `onFailure`
/// gets the same arguments when the call answers an error, whatever its reason.
template <auto work, Order order = Order::faultFirst, auto onFailure = nullptr>
struct Body {};

/// Checks an argument by its type and its name: "aegp_plugin_id" and "menu_item" are numbers with a
/// meaning, and "block" is a block of the basic suite.
template <Name name, typename Argument>
void CheckArgument(SuiteCall& call, Argument argument) {
  if constexpr (std::is_same_v<Argument, AEGP_ProjectH>) {
    call.needsProject(argument, name.text);
  } else if constexpr (std::is_same_v<Argument, AEGP_MemHandle>) {
    call.needsMemory(argument, name.text);
  } else if constexpr (std::is_same_v<Argument, AEGP_PersistentBlobH>) {
    call.needsPreferences(argument, name.text);
  } else if constexpr (std::is_same_v<Argument, void*> && name.is("block")) {
    call.needsBlock(argument, name.text);
  } else if constexpr (name.is("aegp_plugin_id")) {
    call.needsPluginId(argument);
  } else if constexpr (name.is("menu_item")) {
    call.needsMenuItem(argument);
  } else if constexpr (std::is_pointer_v<Argument> && !name.isOptional()) {
    if constexpr (std::is_function_v<std::remove_pointer_t<Argument>>) {
      call.needs(reinterpret_cast<const void*>(argument), name.text);
    } else {
      call.needs(argument, name.text);
    }
  }
}

/// A member of a suite's table, with its arguments' names in their order: records the call, checks
/// the thread, the suite and the arguments, asks for a fault, and notes the error that goes back to
/// the plug-in. From another thread nothing of the host is touched. A name that ends with "?" is of
/// an argument that may be null.
template <SuiteId suite, Name function, typename body, Name... names>
class SuiteFunction;

template <SuiteId suite, Name function, auto work, Order order, auto onFailure, Name... names>
class SuiteFunction<suite, function, Body<work, order, onFailure>, names...> {
 public:
  template <typename Function>
  operator Function*() const {
    static_assert(std::is_same_v<Function*, decltype(work)>);
    (void)isKnown;
    return &Entry<Function>::call;
  }

 private:
  template <typename Function>
  struct Entry;

  template <typename Result, typename... Arguments>
  struct Entry<Result(Arguments...)> {
    static_assert(sizeof...(Arguments) == sizeof...(names));

    static Result call(Arguments... arguments) {
      // `IsEqual` answers a truth, and has no way to fail.
      constexpr bool canFail = std::is_same_v<Result, A_Err>;
      if (!TheHost().isMainThread()) {
        const A_Err error = TheHost().reportFromOtherThread(suite, function.text);
        return static_cast<Result>(canFail ? error : 0);
      }
      SuiteCall call(suite, function.text, arguments...);
      if (order == Order::faultFirst) call.checkIsInTime();
      Result result = run(call, arguments...);
      call.answer(canFail ? static_cast<A_Err>(result) : A_Err{A_Err_NONE});
      if constexpr (canFail) {
        if constexpr (!std::is_null_pointer_v<decltype(onFailure)>) {
          if (result != A_Err_NONE) onFailure(arguments...);
        }
      }
      return result;
    }

    static Result run(SuiteCall& call, Arguments... arguments) {
      constexpr bool canFail = std::is_same_v<Result, A_Err>;
      if (call.error() == A_Err_NONE) (CheckArgument<names>(call, arguments), ...);
      // Also counts a call that is wrong.
      const A_Err fault = call.fault();
      if (call.error() != A_Err_NONE) return static_cast<Result>(canFail ? call.error() : 0);
      if (order == Order::faultFirst && fault != A_Err_NONE) {
        return static_cast<Result>(canFail ? fault : 0);
      }
      const Result result = work(arguments...);
      return order == Order::workFirst && result == Result{} ? static_cast<Result>(fault) : result;
    }
  };

  static inline const bool isKnown = AddFunctionThatCanFail(function.text);
};

/// A function that this host doesn't supply, for a table's member of any type. It ignores its
/// arguments, which is safe: by the platforms' calling conventions the caller removes them.
template <SuiteId suite, Name function>
struct NotSupplied {
  template <typename Function>
  operator Function*() const {
    // Cast twice, because compilers take `void (*)()` for a function of any type.
    return reinterpret_cast<Function*>(reinterpret_cast<void (*)()>(&call));
  }

 private:
  static A_Err call() {
    Host& host = TheHost();
    if (!host.isMainThread()) return host.reportFromOtherThread(suite, function.text);
    SuiteCall call(suite, function.text);
    host.report(Finding::notSupplied,
                std::string(function.text) + " was called, which this host doesn't supply",
                {function.text, {}, function.text});
    host.noteOnce(Actor::plugIn,
                  fmt::format("calls {}, which this host doesn't supply", function.text));
    call.answer(PF_Err_BAD_CALLBACK_PARAM, false);
    return PF_Err_BAD_CALLBACK_PARAM;
  }
};

/// Initializes the member `function` of the suite's table with a `Body`, and names its arguments.
#define SUPPLIED(suite, function, body, ...) \
  .function = SuiteFunction<SuiteId::suite, #function, body __VA_OPT__(, ) __VA_ARGS__>()
#define NOT_SUPPLIED(suite, function) .function = NotSupplied<SuiteId::suite, #function>()

}  // namespace host
