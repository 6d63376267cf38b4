#pragma once

/// What happens when this library is loaded as a module by a program, and when it is unloaded.
///
/// A program that wants a say exports any of these functions, with C linkage, from its main module:
///
///     bool HalyardVersionCheck(unsigned version, const char* buildDate);
///         false: this build does not fit, and is not loaded.
///     void HalyardRegister(unsigned version, const char* buildDate);
///         called once when the library has been loaded.
///     void HalyardUnregister();
///         called once when it is unloaded, if it was registered with the other.
///
/// They are called with what LibraryVersion says, by the thread that loads or unloads, while the system holds
/// its lock over modules: they may not load or unload any, nor wait for other threads. A program that exports
/// none of them loads the library freely. At the end of a process nobody is told. Only Windows tells a module
/// that it is loaded or unloaded: on other systems none of these functions is called, the check included.
class Module {
public:
    /// Address of a function that the program exports; null when there is none.
    using FindFunction = void* (*)(const char* name);

    explicit Module(FindFunction find) : m_Find(find) {}

    /// False when the program refuses the library; nothing is registered then.
    [[nodiscard]] bool Load();
    void Unload();

private:
    FindFunction m_Find;
    bool m_IsRegistered = false;
};
