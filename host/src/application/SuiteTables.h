#pragma once

#include <algorithm>
#include <cstddef>

#include "AE_AdvEffectSuites.h"
#include "AE_GeneralPlug.h"
#include "Suites.h"

// The tables that plug-ins get, and what their functions share. All of them act on `TheHost()`.

namespace host {

extern const AEGP_RegisterSuite5 kRegisterSuite5;
extern const AEGP_CommandSuite1 kCommandSuite1;
extern const AEGP_UtilitySuite3 kUtilitySuite3;
extern const AEGP_UtilitySuite6 kUtilitySuite6;
extern const AEGP_ProjSuite6 kProjSuite6;
extern const AEGP_MemorySuite1 kMemorySuite1;
extern const PF_AdvAppSuite2 kAdvAppSuite2;
extern const AEGP_PersistentDataSuite3 kPersistentDataSuite3;
extern const AEGP_PersistentDataSuite4 kPersistentDataSuite4;

/// Adds a call of the suite's `function`, which this host doesn't supply, to the timeline. Returns
/// the error for it.
A_Err NoteNotSupplied(SuiteId suite, const char* function);

template <size_t size>
struct FunctionName {
  consteval FunctionName(const char (&name)[size]) { std::copy_n(name, size, text); }
  char text[size];
};

template <SuiteId suite, FunctionName name>
A_Err AnswerNotSupplied() {
  return NoteNotSupplied(suite, name.text);
}

/// A function that this host doesn't supply, for a table's member of any type. It ignores its
/// arguments, which is safe: by the platforms' calling conventions the caller removes them.
template <SuiteId suite, FunctionName name>
struct NotSupplied {
  template <typename Function>
  operator Function*() const {
    // Cast twice, because compilers take `void (*)()` for a function of any type.
    return reinterpret_cast<Function*>(
        reinterpret_cast<void (*)()>(&AnswerNotSupplied<suite, name>));
  }
};

/// Initializes the member `function` of the suite's table with it.
#define NOT_SUPPLIED(suite, function) .function = NotSupplied<SuiteId::suite, #function>()

}  // namespace host
