#pragma once

#include <cstddef>
#include <cstdint>

#include "corvel/platform/Export.h"

/// The functions of the host's two platform libraries, over POSIX. A vendor whose host has these
/// libraries links them instead (CORVEL_PLATFORM_LIBRARIES); nothing else in the library knows the
/// difference. None of them throws.
extern "C" {

// --- Text ------------------------------------------------------------------------------------

/// The one encoding that the text functions know.
enum : int { kUnicodeEncodingUtf8 = 0 };

/// @param length  bytes to look at; -1 means up to the terminating NUL.
/// @return true exactly when the buffer is well-formed UTF-8 (RFC 3629: no overlong forms, no
///         surrogates, nothing above U+10FFFF).
CORVEL_EXPORT bool Unicode_IsBufferValid(const char* buffer, long length, int encoding);

/// A printable copy: every byte that is not part of a well-formed UTF-8 sequence becomes \xHH, two
/// lower-case hexadecimal digits; everything else is copied.
/// @return a NUL-terminated text that the caller releases with free(), or null without memory.
CORVEL_EXPORT char* Unicode_EscapeBuffer(const char* buffer, long length, int encoding);

// --- Feature switches ------------------------------------------------------------------------

/// Sets FeatureList up; to be called once before it is read.
CORVEL_EXPORT void FeatureState_InitDeltaMode(void);

/// How many feature switches there are.
enum : std::size_t { kFeatureCount = 512 };

/// One pointer per feature switch, each to a byte that is non-zero when the feature is on. Every
/// switch of this platform is off.
CORVEL_EXPORT extern const unsigned char* FeatureList[kFeatureCount];

// --- Processes -------------------------------------------------------------------------------

/// Starts a program in a new process, which begins with the default action for SIGPIPE and an
/// empty signal mask, and inherits no descriptor but those of the map.
///
/// @param argv            null-terminated argument vector.
/// @param envp            null-terminated environment; null means that of the caller.
/// @param resourcePool    the pool to start in; -1 means the caller's. Without pools: ignored.
/// @param descriptors     descriptors[i] of the caller becomes descriptor i of the child.
/// @param descriptorCount how many there are.
/// @param userId          -1: that of the caller. Ignored here, as are groupId and flags.
/// @param pid             receives the process id; untouched on failure.
/// @return a status code whose low 32 bits are zero on success.
CORVEL_EXPORT std::uint64_t NukuserCompat_ForkExec(const char* path,
                                                   const char* const* argv,
                                                   const char* const* envp,
                                                   int resourcePool,
                                                   const int* descriptors,
                                                   std::size_t descriptorCount,
                                                   int userId,
                                                   int groupId,
                                                   int flags,
                                                   int* pid);

/// Writes the text of a status code into the buffer, cut to its size and always terminated.
CORVEL_EXPORT void NukuserStatus_CodeToString(std::uint64_t code,
                                              char* buffer,
                                              std::size_t size,
                                              int flags);
}
