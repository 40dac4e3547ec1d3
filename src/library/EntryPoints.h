#pragma once

#include <cstdint>

#pragma GCC visibility push(default)
namespace vlclientui {
class ClassFactory;

/// Results of the entry points.
namespace entryPointResult {
/// It was done.
inline constexpr std::int32_t ok = 0;
inline constexpr std::int32_t no = 1;  ///< DllCanUnloadNow: objects live
/// E_FAIL: the file could not be written.
inline constexpr std::int32_t failed = static_cast<std::int32_t>(0x80004005);
/// E_POINTER: a null pointer was given.
inline constexpr std::int32_t invalidPointer = static_cast<std::int32_t>(0x80004003);
/// CLASS_E_CLASSNOTAVAILABLE: no such class, or none that hosts may create.
inline constexpr std::int32_t classNotAvailable = static_cast<std::int32_t>(0x80040111);
}  // namespace entryPointResult
}  // namespace vlclientui

extern "C" {

/// Writes the classes into the user's registration file, whole or not at all.
std::int32_t DllRegisterServer();
/// Removes them again; a missing registration file is no failure.
std::int32_t DllUnregisterServer();
/// @param classIdentity "{8-4-4-4-12}" in any case, or the class's name. @param factory receives a factory
/// that lives as long as the library, or null. @returns ok, classNotAvailable (for helper classes too) or
/// invalidPointer.
std::int32_t DllGetClassObject(const char* classIdentity, const vlclientui::ClassFactory** factory);
/// ok while no object is alive, otherwise no.
std::int32_t DllCanUnloadNow();
}
#pragma GCC visibility pop
