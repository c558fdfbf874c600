#pragma once

/// A body that runs rarely: kept out of the way of the code that calls it.
#if defined(__GNUC__)
#define COMMANDPROCESSOR_COLD __attribute__((noinline, cold))
#else
#define COMMANDPROCESSOR_COLD
#endif

/// Marks what the shared library offers to its hosts. It stands on the *first* declaration of a class, forward
/// declarations included: a template instantiated on a class that was first seen without it stays hidden.
#if defined(_WIN32) && !defined(COMMANDPROCESSOR_STATIC)
#if defined(COMMANDPROCESSOR_BUILDING)
#define COMMANDPROCESSOR_API __declspec(dllexport)
#else
#define COMMANDPROCESSOR_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define COMMANDPROCESSOR_API __attribute__((visibility("default")))
#else
#define COMMANDPROCESSOR_API
#endif
