#pragma once

#include <stdexcept>
#include <string>

#include "Host.h"

// What a user does with the host. Paths are relative to the session folder.

namespace host {

/// Thrown if a step can't be played at this point.
struct StepImpossible : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Opens a project by the host's open dialog.
void OpenByDialog(Host& host, const std::string& path);
/// Opens a project from the desktop, without a dialog.
void OpenByDoubleClick(Host& host, const std::string& path);
/// Throws `StepImpossible` if the project has no path.
void Save(Host& host);
void SaveAs(Host& host, const std::string& path);
/// Closes the project without saving it.
void Close(Host& host);
void OpenMenu(Host& host);
/// Picks a plug-in's menu command by its text. Throws `StepImpossible` if there is no such item, or
/// it is disabled.
void Pick(Host& host, const std::string& text);
/// Picks each menu item of plug-ins that is enabled.
void PickAll(Host& host);
/// Deletes a project's file.
void Remove(Host& host, const std::string& path);
void Quit(Host& host);

}  // namespace host
