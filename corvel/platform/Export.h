#pragma once

/// Marks what libcorvel offers to plug-ins and hosts. The library is built with hidden visibility,
/// so whatever does not carry this mark is no part of its interface.
#define CORVEL_EXPORT __attribute__((visibility("default")))
