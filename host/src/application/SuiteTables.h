#pragma once

#include <algorithm>
#include <cstddef>

#include "AE_AdvEffectSuites.h"
#include "AE_GeneralPlug.h"
#include "Faults.h"

// The tables that plug-ins get, and what their functions share. They act on `TheHost()`.

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

/// The failure that the session has asked for this call of `function`, which goes on the timeline;
/// 0 for none.
A_Err Fault(FailingFunction function);

/// Notes a call of `function`, which this host doesn't supply, and returns the host's error for it.
A_Err NoteNotSupplied(const char* function);

template <size_t size>
struct FunctionName {
  consteval FunctionName(const char (&name)[size]) { std::copy_n(name, size, text); }
  char text[size];
};

template <FunctionName name>
A_Err AnswerNotSupplied() {
  return NoteNotSupplied(name.text);
}

/// Stands in a table for a function that this host doesn't supply. Whatever the arguments are, the
/// call ends in `NoteNotSupplied`: with the C calling convention the caller clears them away.
template <FunctionName name>
struct NotSupplied {
  template <typename Function>
  operator Function*() const {
    // By way of the type that the compiler takes for any function.
    return reinterpret_cast<Function*>(reinterpret_cast<void (*)()>(&AnswerNotSupplied<name>));
  }
};

/// The initializer of such a member.
#define NOT_SUPPLIED(function) .function = NotSupplied<#function>()

}  // namespace host
