#pragma once

/// HALYARD_API marks what the library exports.
/// HALYARD_BUILD is defined while the library itself is compiled, HALYARD_STATIC by those who build or use it
/// as a static library. HALYARD_API_TEMPLATE does so for explicit instantiations of templates, where clang
/// wants another form of attribute.
#if defined(HALYARD_STATIC)
#define HALYARD_API
#elif defined(_WIN32) && defined(__GNUC__) && defined(HALYARD_BUILD)
#define HALYARD_API [[gnu::dllexport]]
#elif defined(_WIN32) && defined(__GNUC__)
#define HALYARD_API [[gnu::dllimport]]
#elif defined(_WIN32) && defined(HALYARD_BUILD)
#define HALYARD_API __declspec(dllexport)
#elif defined(_WIN32)
#define HALYARD_API __declspec(dllimport)
#else
#define HALYARD_API [[gnu::visibility("default")]]
#endif

#if defined(HALYARD_STATIC) || defined(_WIN32) || !defined(__GNUC__)
#define HALYARD_API_TEMPLATE HALYARD_API
#else
#define HALYARD_API_TEMPLATE __attribute__((visibility("default")))
#endif
