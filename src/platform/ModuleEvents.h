#pragma once

/// What the system tells a module of a program, on Windows. The answers stand in frame/, which knows what to
/// do.
namespace ModuleEvents {
/// The library is being loaded. False: it shall not be.
bool Loading();
/// The library is being unloaded while the program goes on.
void Unloading();
} // namespace ModuleEvents
